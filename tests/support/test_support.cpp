#include "test_support.h"

#include <cstdio>

namespace nxtest {
namespace {

std::vector<AssertRecorder::Report>& Reports() {
  static std::vector<AssertRecorder::Report> reports;
  return reports;
}

int Record(const char* expression, const char* file, int line) {
  Reports().push_back({expression ? expression : "", file ? file : "", line});
  return 0;
}

}  // namespace

AssertRecorder::AssertRecorder() : previous_(NxSetAssertHandler(&Record)) {
  Reports().clear();
}

AssertRecorder::~AssertRecorder() {
  NxSetAssertHandler(previous_);
  Reports().clear();
}

const std::vector<AssertRecorder::Report>& AssertRecorder::reports() const {
  return Reports();
}

void AssertRecorder::clear() {
  Reports().clear();
}

std::string Hex(const void* bytes, size_t length) {
  std::string out;
  const unsigned char* p = static_cast<const unsigned char*>(bytes);
  char buffer[3];
  for (size_t i = 0; i < length; ++i) {
    std::snprintf(buffer, sizeof buffer, "%02x", p[i]);
    out += buffer;
  }
  return out;
}

}  // namespace nxtest
