// faults NAME: makes one error on purpose, so that a run of the checks can first prove that they find it.
#include <climits>
#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
  const char* fault = argc > 1 ? argv[1] : "";
  // Volatile, so that nothing here is optimised away.
  if (std::strcmp(fault, "signed-overflow") == 0) {
    volatile int largest = INT_MAX;
    largest = largest + argc;
  } else if (std::strcmp(fault, "write-behind-block") == 0) {
    volatile char* volatile block = new char[40];
    block[40] = 1;
    delete[] block;
  } else if (std::strcmp(fault, "write-after-delete") == 0) {
    volatile char* volatile block = new char[40];
    delete[] block;
    block[20] = 1;
    volatile char* volatile next = new char[41];
    delete[] next;
  } else if (std::strcmp(fault, "double-delete") == 0) {
    volatile char* volatile block = new char[40];
    delete[] block;
    delete[] block;
  }
  std::puts("ended");
  return 0;
}
