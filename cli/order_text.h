// Order text on the command line: values of `nxtm print NxString` given as
// the orders of an index key rather than as text.
#ifndef NXTM_CLI_ORDER_TEXT_H
#define NXTM_CLI_ORDER_TEXT_H

#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "cli.h"

namespace cli {

struct StringPrintOptions {
  bool orderText = false;              // the values are order text
  unsigned char resultCodeSet = 0;     // the code set of the printed result
  std::vector<NxString> values;        // the order texts, when orderText
};

// Takes the options of `print NxString` out of `args`:
//   --key              each VALUE becomes the order text that an index key of
//                      it holds, with --codeset N (253) and --language N (1)
//   --orders           each VALUE is a comma-separated list of hex orders,
//                      with --state N (1) as the state byte
//   --result-codeset N the code set of the printed result (the default one)
// The VALUE arguments after the type name are read when order text is asked
// for.  False with a message in `error` on a bad option or value.
bool TakeStringPrintOptions(Args& args, StringPrintOptions& options, std::string& error);

// The orders of an order text as 4-digit lowercase hex separated by
// blanks, or "(none)" when it holds none.
std::string OrdersHex(const NxString& orders);

}  // namespace cli

#endif
