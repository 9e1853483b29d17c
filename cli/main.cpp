// The nxtm program: every capability of the library, reachable by hand.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>

#include <nxtm/nxtm.h>

#include "cli.h"

namespace cli {

namespace {
std::vector<Command>& Registry() {
  static std::vector<Command> commands;
  return commands;
}
}  // namespace

void Register(const Command& command) {
  Registry().push_back(command);
}

const std::vector<Command>& Commands() {
  std::vector<Command>& commands = Registry();
  std::stable_sort(commands.begin(), commands.end(),
                   [](const Command& a, const Command& b) { return a.order < b.order; });
  return commands;
}

int Fail(const std::string& message) {
  std::fprintf(stderr, "nxtm: %s\n", message.c_str());
  return 2;
}

bool TakeFlag(Args& args, const std::string& flag) {
  auto it = std::find(args.begin(), args.end(), flag);
  if (it == args.end()) return false;
  args.erase(it);
  return true;
}

std::string TakeOption(Args& args, const std::string& option, const std::string& fallback,
                       bool& error) {
  for (size_t i = 0; i < args.size(); ++i) {
    if (args[i] == option) {
      if (i + 1 >= args.size()) {
        error = true;
        args.erase(args.begin() + static_cast<long>(i));
        return fallback;
      }
      std::string value = args[i + 1];
      args.erase(args.begin() + static_cast<long>(i), args.begin() + static_cast<long>(i) + 2);
      return value;
    }
    const std::string prefix = option + "=";
    if (args[i].compare(0, prefix.size(), prefix) == 0) {
      std::string value = args[i].substr(prefix.size());
      args.erase(args.begin() + static_cast<long>(i));
      return value;
    }
  }
  return fallback;
}

bool ParseNumber(const std::string& text, long low, long high, long& value) {
  if (text.empty()) return false;
  errno = 0;
  char* end = nullptr;
  const long v = std::strtol(text.c_str(), &end, 10);
  if (errno != 0 || end == nullptr || *end != '\0' || v < low || v > high) return false;
  value = v;
  return true;
}

}  // namespace cli

namespace {

void PrintHelp() {
  std::printf("usage: nxtm [COMMAND [ARGS...]]\n\n");
  std::printf("With no command, nxtm runs its default job (types).\n\ncommands:\n");
  for (const cli::Command& c : cli::Commands()) {
    std::printf("  %-44s %s\n", c.usage, c.summary);
  }
  std::printf("  %-44s %s\n", "--help", "this list");
}

}  // namespace

int main(int argc, char** argv) {
  ___NxTypemgrContext(1);
  int status = 0;
  try {
    std::string name = argc > 1 ? argv[1] : "types";
    if (name == "--help" || name == "-h" || name == "help") {
      PrintHelp();
    } else {
      const cli::Command* found = nullptr;
      for (const cli::Command& c : cli::Commands()) {
        if (name == c.name) found = &c;
      }
      if (found == nullptr) {
        status = cli::Fail("unknown command '" + name + "' (try nxtm --help)");
      } else {
        cli::Args args(argv + (argc > 1 ? 2 : 1), argv + argc);
        status = found->run(args);
      }
    }
  } catch (const std::bad_alloc&) {
    status = cli::Fail("out of memory");
  }
  ___NxTypemgrContext(0);
  return status;
}
