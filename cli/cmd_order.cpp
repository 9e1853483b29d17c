// Order text for `nxtm print NxString`: the orders of an index key, made
// from a text the way the key form makes them, or given one by one.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "order_text.h"
#include "utf8.h"

namespace cli {

namespace {

// The orders that fit a key of the longest length, behind its 4-byte head.
constexpr size_t kKeyOrders = (NxINDEX_MAX_KEYLEN - 4) / 2;

bool ParseSmall(const std::string& text, const char* what, long high, unsigned char& value,
                std::string& error) {
  long number = 0;
  if (!ParseNumber(text, 0, high, number)) {
    error = std::string(what) + " must be a number from 0 to " + std::to_string(high) + ", not '" +
            text + "'";
    return false;
  }
  value = static_cast<unsigned char>(number);
  return true;
}

NxString OrderString(std::vector<unsigned short> orders, unsigned char state) {
  orders.push_back(0);
  NxString key(orders.data());
  key.SetCodeSetCode(NxCS_ORDERS);
  key.language = state;
  return key;
}

// The orders of `text` as its index key holds them.  The state byte starts
// as the text's collation state; the first order that changes the state
// takes the new one, and a later change ends the key with bit 7 set.
NxString KeyOrders(NxString& text) {
  NxStringIterator reader(text);
  unsigned char state = text.language == NxLANG_NULL ? 0 : reader.state;
  std::vector<unsigned short> orders;
  while (orders.size() < kKeyOrders) {
    unsigned short order = reader.GetNextOrder(1);
    if (reader.state != state) {
      if (!orders.empty()) {
        state = static_cast<unsigned char>(state | 0x80);
        order = 0;
      } else if (order != 0) {
        state = reader.state;
      }
    }
    if (order == 0) break;
    orders.push_back(order);
  }
  return OrderString(orders, state);
}

// "400C,5020,3F0A": orders in hex, an optional 0x each; 0 ends order text
// and is no order.
bool ParseOrders(const std::string& list, std::vector<unsigned short>& orders,
                 std::string& error) {
  size_t from = 0;
  for (;;) {
    const size_t comma = list.find(',', from);
    std::string item = list.substr(from, comma == std::string::npos ? std::string::npos
                                                                    : comma - from);
    if (item.size() > 2 && item[0] == '0' && (item[1] == 'x' || item[1] == 'X')) item.erase(0, 2);
    char* end = nullptr;
    const unsigned long order = std::strtoul(item.c_str(), &end, 16);
    if (item.empty() || item.size() > 4 || *end != '\0' || item[0] == '+' || item[0] == '-' ||
        order == 0) {
      error = "bad order '" + list.substr(from, comma - from) +
              "' (hex from 1 to FFFF, separated by commas)";
      return false;
    }
    orders.push_back(static_cast<unsigned short>(order));
    if (comma == std::string::npos) return true;
    from = comma + 1;
  }
}

}  // namespace

std::string OrdersHex(const NxString& orders) {
  std::string text;
  const unsigned char* units = reinterpret_cast<const unsigned char*>(orders.StrGet());
  for (unsigned short i = 0, n = orders.Len(); i < n; ++i) {
    unsigned short unit;
    std::memcpy(&unit, units + 2 * i, 2);
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%s%04x", i != 0 ? " " : "", unit);
    text += buffer;
  }
  return text.empty() ? "(none)" : text;
}

bool TakeStringPrintOptions(Args& args, StringPrintOptions& options, std::string& error) {
  const bool key = TakeFlag(args, "--key");
  const bool orders = TakeFlag(args, "--orders");
  bool missing = false;
  const std::string codeSetText = TakeOption(args, "--codeset", "", missing);
  const std::string languageText = TakeOption(args, "--language", "", missing);
  const std::string stateText = TakeOption(args, "--state", "", missing);
  const std::string resultText = TakeOption(args, "--result-codeset", "", missing);
  if (missing) {
    error = "an option stands last without its number";
    return false;
  }
  options.resultCodeSet = NxString::GetDefaultCodeSet();
  if (!resultText.empty()) {
    if (!ParseSmall(resultText, "--result-codeset", 253, options.resultCodeSet, error))
      return false;
    if (NxLanguageContext::QueryCodeSet(options.resultCodeSet) == nullptr) {
      error = "code set " + resultText + " doesn't exist (see nxtm codesets)";
      return false;
    }
  }
  if (key && orders) {
    error = "--key and --orders exclude each other";
    return false;
  }
  if (!key && (!codeSetText.empty() || !languageText.empty())) {
    error = "--codeset and --language belong to --key";
    return false;
  }
  if (!orders && !stateText.empty()) {
    error = "--state belongs to --orders";
    return false;
  }
  options.orderText = key || orders;
  if (!options.orderText) return true;

  const Args values(args.begin() + 1, args.end());
  if (key) {
    unsigned char codeSet = NxCS_UNICODE;
    unsigned char language = NxLANG_NEUTRAL;
    if (!codeSetText.empty() && !ParseSmall(codeSetText, "--codeset", 253, codeSet, error))
      return false;
    if (codeSet == 0) {
      error = "--codeset 0 makes no key: text without a code set has no orders";
      return false;
    }
    if (!languageText.empty() && !ParseSmall(languageText, "--language", 253, language, error))
      return false;
    if (NxLanguageContext::QueryCodeSet(codeSet) == nullptr) {
      error = "code set " + codeSetText + " doesn't exist (see nxtm codesets)";
      return false;
    }
    for (const std::string& value : values) {
      NxString unicode;
      std::string why;
      if (!ReadUtf8(value, language, unicode, why)) {
        error = "bad text '" + value + "': " + why;
        return false;
      }
      NxString text(codeSet, language);
      text += unicode;
      options.values.push_back(KeyOrders(text));
    }
    return true;
  }
  unsigned char state = NxSTATE_LATIN;
  if (!stateText.empty() && !ParseSmall(stateText, "--state", 255, state, error)) return false;
  for (const std::string& value : values) {
    std::vector<unsigned short> list;
    if (!ParseOrders(value, list, error)) return false;
    options.values.push_back(OrderString(list, state));
  }
  return true;
}

}  // namespace cli
