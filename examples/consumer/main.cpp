// Stores a few values through the type manager and reads them back.
#include <cstdio>

#include <nxtm/nxtm.h>

int main() {
  ___NxTypemgrContext(1);
  NxTypeMgr* mgr = DefaultTypeMgr(nullptr);
  if (mgr == nullptr) return 1;

  char id = 0;
  if (mgr->Name2NxTypeId("long", id) != 0) return 1;
  int32_t values[3] = {1, -2, 300000};
  unsigned char disk[12];
  const uint32_t written = mgr->Store(id, disk, values, 2, 3);  // most significant byte first
  int32_t back[3] = {0, 0, 0};
  mgr->Load(id, back, disk, 2, 3);
  const int32_t order = mgr->Cmp(id, &values[0], &values[1], 0, 1, 8);

  const char* info = nullptr;
  GetNxTypeMgrInfo(nullptr, nullptr, &info, nullptr, nullptr);
  std::printf("%s\n%u disk bytes, first %02x%02x%02x%02x, back %d %d %d, 1 vs -2: %d\n", info,
              written, disk[0], disk[1], disk[2], disk[3], back[0], back[1], back[2], order);
  ___NxTypemgrContext(0);
  return (written == 12 && back[2] == 300000 && order > 0) ? 0 : 1;
}
