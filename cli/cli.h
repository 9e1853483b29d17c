// The nxtm program: a registry of sub-commands, each in its own file.
#ifndef NXTM_CLI_CLI_H
#define NXTM_CLI_CLI_H

#include <string>
#include <vector>

namespace cli {

// Arguments after the command name.
using Args = std::vector<std::string>;

struct Command {
  const char* name;
  const char* usage;    // e.g. "store TYPE VALUE... [--format 1|2|8]"
  const char* summary;  // one line for --help
  int (*run)(const Args& args);
  int order;  // position in --help (lower first)
};

// Registers a command; used through a static Registrar in each command file.
void Register(const Command& command);
const std::vector<Command>& Commands();

struct Registrar {
  explicit Registrar(const Command& command) { Register(command); }
};

// Writes "nxtm: <message>" as one line to stderr and returns 2, the exit
// status of every usage or input error.
int Fail(const std::string& message);

// Option helpers.  Each removes what it consumes from `args`.
// True when `flag` (e.g. "--old") stands in args.
bool TakeFlag(Args& args, const std::string& flag);
// The value after `option` (e.g. "--format"), or `fallback` when absent.
// Sets `error` when the option stands last without a value.
std::string TakeOption(Args& args, const std::string& option, const std::string& fallback,
                       bool& error);
// Parses a whole decimal number in [low, high]; false on anything else.
bool ParseNumber(const std::string& text, long low, long high, long& value);

}  // namespace cli

#endif
