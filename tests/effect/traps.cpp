// SPDX-License-Identifier: MIT
#include "traps.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

#include <cstddef>
#include <cstring>

namespace {

/// In memory that the parent shares, as no message could be sent.
struct Catch {
  const char* function;  ///< a literal, at the same place in both processes
  int system_call;
  bool finished;
};
Catch* shared = nullptr;
bool armed = false;

void pass(const char* function) {
  if (!armed)
    return;
  shared->function = function;
  _exit(0);
}

void on_system_call(int /*signal*/, siginfo_t* info, void* /*context*/) {
  shared->system_call = info->si_syscall;
  _exit(0);
}

template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// Lets a process do nothing more but end.
bool forbid_system_calls() {
  struct sigaction action = {};
  action.sa_sigaction = on_system_call;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGSYS, &action, nullptr);
  sock_filter rules[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP),
  };
  const sock_fprog program = {static_cast<unsigned short>(std::size(rules)), rules};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0;
}

}  // namespace

// These stand before the C library's for everything in the process, a plug-in it has loaded included.
#define ONDEX_EXPORTED extern "C" __attribute__((visibility("default")))
extern "C" {  // The C library's own, by its second names.
// NOLINTBEGIN(bugprone-reserved-identifier)
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* memory);
// NOLINTEND(bugprone-reserved-identifier)
}

ONDEX_EXPORTED void* malloc(size_t size) noexcept {
  pass("malloc");
  return __libc_malloc(size);
}
ONDEX_EXPORTED void* calloc(size_t count, size_t size) noexcept {
  pass("calloc");
  return __libc_calloc(count, size);
}
ONDEX_EXPORTED void* realloc(void* memory, size_t size) noexcept {
  pass("realloc");
  return __libc_realloc(memory, size);
}
ONDEX_EXPORTED void* aligned_alloc(size_t alignment, size_t size) noexcept {
  pass("aligned_alloc");
  return __libc_memalign(alignment, size);
}
ONDEX_EXPORTED void free(void* memory) noexcept {
  pass("free");
  __libc_free(memory);
}
ONDEX_EXPORTED int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
  pass("pthread_mutex_lock");
  static auto* const real = next<int(pthread_mutex_t*)>("pthread_mutex_lock");
  return real(mutex);
}
ONDEX_EXPORTED int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
  pass("pthread_rwlock_wrlock");
  static auto* const real = next<int(pthread_rwlock_t*)>("pthread_rwlock_wrlock");
  return real(lock);
}
ONDEX_EXPORTED int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
  pass("pthread_rwlock_rdlock");
  static auto* const real = next<int(pthread_rwlock_t*)>("pthread_rwlock_rdlock");
  return real(lock);
}

namespace ondex::test {

std::string trapped(const std::function<void()>& work) {
  void* memory = mmap(nullptr, sizeof(Catch), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  shared = new (memory) Catch{nullptr, -1, false};
  const pid_t child = fork();
  if (child == 0) {
    if (!forbid_system_calls())
      _exit(1);
    armed = true;
    work();
    shared->finished = true;
    _exit(0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  const Catch caught = *shared;
  munmap(memory, sizeof(Catch));
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
      << "the trap could not be set, status " << status;
  if (caught.function != nullptr)
    return caught.function;
  if (caught.system_call >= 0)
    return "system call " + std::to_string(caught.system_call);
  return caught.finished ? "" : "the end of the process";
}

}  // namespace ondex::test
