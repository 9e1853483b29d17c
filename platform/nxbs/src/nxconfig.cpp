// Process configuration: the abstract reader, a key/value store and the
// process-wide installed configuration.
#include <nxbs/nxbs.h>

#include <atomic>
#include <cstring>
#include <map>
#include <string>

namespace {

bool EqualIgnoringAsciiCase(const char* a, const char* b) {
  for (;; ++a, ++b) {
    unsigned char x = static_cast<unsigned char>(*a);
    unsigned char y = static_cast<unsigned char>(*b);
    if (x >= 'A' && x <= 'Z') x = static_cast<unsigned char>(x - 'A' + 'a');
    if (y >= 'A' && y <= 'Z') y = static_cast<unsigned char>(y - 'A' + 'a');
    if (x != y) return false;
    if (x == 0) return true;
  }
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

// [begin, end) with blanks dropped at both ends.
std::string Trimmed(const char* begin, const char* end) {
  while (begin < end && IsBlank(*begin)) ++begin;
  while (end > begin && IsBlank(end[-1])) --end;
  return std::string(begin, end);
}

std::atomic<NxConfig*> installedConfig{nullptr};

}  // namespace

NxConfig::~NxConfig() = default;

int NxConfig::Query(const char* key, void* flag, const char** words) const {
  if (key == nullptr) return 1;
  const char* value = Value(key);
  if (value == nullptr) return 1;

  // Without words a key counts as set unless its value is "0", the way a
  // switch is turned off in a configuration file.
  bool hit = words == nullptr && std::strcmp(value, "0") != 0;
  for (const char** word = words; word != nullptr && !hit && *word != nullptr; ++word) {
    hit = EqualIgnoringAsciiCase(value, *word);
  }
  if (hit && flag != nullptr) {
    // The flag is a 16-bit word at any alignment.
    const int16_t one = 1;
    std::memcpy(flag, &one, sizeof one);
  }
  return 0;
}

struct NxKeyValueConfig::Impl {
  std::map<std::string, std::string> values;
};

NxKeyValueConfig::NxKeyValueConfig() : impl_(new Impl) {}

NxKeyValueConfig::~NxKeyValueConfig() {
  delete impl_;
}

const char* NxKeyValueConfig::Value(const char* key) const {
  if (key == nullptr) return nullptr;
  auto found = impl_->values.find(key);
  return found == impl_->values.end() ? nullptr : found->second.c_str();
}

void NxKeyValueConfig::Set(const char* key, const char* value) {
  if (key == nullptr) return;
  if (value == nullptr) {
    impl_->values.erase(key);
    return;
  }
  impl_->values[key] = value;
}

void NxKeyValueConfig::Remove(const char* key) {
  if (key != nullptr) impl_->values.erase(key);
}

void NxKeyValueConfig::Clear() {
  impl_->values.clear();
}

int NxKeyValueConfig::Parse(const char* text) {
  if (text == nullptr) return 0;
  int set = 0;
  const char* line = text;
  while (*line != 0) {
    const char* end = std::strchr(line, '\n');
    if (end == nullptr) end = line + std::strlen(line);

    const char* first = line;
    while (first < end && IsBlank(*first)) ++first;
    if (first < end && *first != '#') {
      const char* equals = static_cast<const char*>(std::memchr(first, '=', end - first));
      if (equals != nullptr) {
        std::string key = Trimmed(first, equals);
        if (!key.empty()) {
          impl_->values[key] = Trimmed(equals + 1, end);
          ++set;
        }
      }
    }
    line = *end == '\n' ? end + 1 : end;
  }
  return set;
}

NxConfig* DefaultConfig(NxConfig* config) {
  if (config == NxCONFIG_QUERY) return installedConfig.load();
  return installedConfig.exchange(config);
}
