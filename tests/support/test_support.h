// Helpers shared by the test programs.
#ifndef NXTM_TEST_SUPPORT_H
#define NXTM_TEST_SUPPORT_H

#include <string>
#include <vector>

#include <nxtm/nxtm.h>

namespace nxtest {

// Records every ZENTRO_assert report while it lives, instead of printing it.
class AssertRecorder {
 public:
  AssertRecorder();
  ~AssertRecorder();
  AssertRecorder(const AssertRecorder&) = delete;
  AssertRecorder& operator=(const AssertRecorder&) = delete;

  struct Report {
    std::string expression;
    std::string file;
    int line;
  };
  const std::vector<Report>& reports() const;
  void clear();

 private:
  NxAssertHandler previous_;
};

// Bytes as lower-case hex, two digits each, no separators.
std::string Hex(const void* bytes, size_t length);

}  // namespace nxtest

#endif
