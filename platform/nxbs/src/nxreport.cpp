// Assertion and out-of-memory reports and the version check.
#include <nxbs/nxbs.h>

#include <atomic>
#include <cstdio>
#include <new>

namespace {

std::atomic<NxAssertHandler> assertHandler{nullptr};

int DefaultAssertHandler(const char* expression, const char* file, int line) {
  std::fprintf(stderr, "nxtm: assertion failed: %s (%s:%d)\n", expression ? expression : "?",
               file ? file : "?", line);
  std::fflush(stderr);
  return 0;
}

}  // namespace

int ZENTRO_assert(const char* expression, const char* file, int line) {
  NxAssertHandler handler = assertHandler.load();
  if (handler == nullptr) return DefaultAssertHandler(expression, file, line);
  return handler(expression, file, line);
}

NxAssertHandler NxSetAssertHandler(NxAssertHandler handler) {
  return assertHandler.exchange(handler);
}

int NxCallMemoryHandler(uint32_t /*size*/) {
  throw std::bad_alloc();
}

int CheckNxVersionNumber(uint32_t major, uint32_t minor, uint32_t build, uint32_t /*patch*/,
                         uint32_t /*extra*/, int flags) {
  if ((flags & NxVERSION_FLAG_CALLER) != NxVERSION_FLAG_CALLER) return NxVERSION_BAD_FLAGS;
  if (major != NxBS_VERSION_MAJOR) return NxVERSION_MAJOR_MISMATCH;
  if (minor != NxBS_VERSION_MINOR) return NxVERSION_MINOR_MISMATCH;
  if ((flags & NxVERSION_FLAG_BUILD) != 0 && build != NxBS_VERSION_BUILD) {
    return NxVERSION_BUILD_MISMATCH;
  }
  return NxVERSION_OK;
}
