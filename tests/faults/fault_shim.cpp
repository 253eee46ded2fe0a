// Stands between the player and the system, by LD_PRELOAD, and makes things go wrong at a named
// moment: the process is killed at a certain call that changes a file, the disk is full after a
// number of bytes, the clock of the wall is set.
//
// Which calls count: those on files below KV_FAULT_FOLDER, once the file KV_FAULT_ARM exists.
//   KV_FAULT_LOG=FILE        one line for each: microseconds since the first, name, path
//   KV_FAULT_POINT=N         kill -9 in front of the N-th, from 1
//   KV_FAULT_TORN=1          with it: let half of the bytes through first, if it is a write
//   KV_FAULT_AFTER_US=N      kill -9 that long after the first
//   KV_FAULT_SPACE=N         the folder takes no more than N bytes
//   KV_FAULT_CLOCK=FILE      seconds, as text, that the clock of the wall is set by. Read ten times
//   a
//                            second; waits that follow that clock follow its change, as the
//                            system's own do
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <thread>
#include <time.h>
#include <unistd.h>

namespace {

constexpr long kMicrosecond = 1'000'000;
constexpr long kNanosecond = 1'000'000'000;

template <class Function>
Function* Real(const char* name, Function* /*same type*/) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define REAL(name) static auto* const real = Real(#name, &::name)

long NumberOf(const char* variable, long otherwise) {
  const char* text = getenv(variable);
  return text != nullptr ? atol(text) : otherwise;
}

// The system's own, whatever is interposed here.
timespec SystemClock(clockid_t clock) {
  timespec now{};
  syscall(SYS_clock_gettime, clock, &now);
  return now;
}

long MicrosecondsNow() {
  const timespec now = SystemClock(CLOCK_MONOTONIC);
  return now.tv_sec * kMicrosecond + now.tv_nsec / 1000;
}

[[noreturn]] void Die() {
  syscall(SYS_kill, getpid(), SIGKILL);
  for (;;) pause();
}

struct Plan {
  std::string folder = getenv("KV_FAULT_FOLDER") != nullptr ? getenv("KV_FAULT_FOLDER") : "";
  const char* arm = getenv("KV_FAULT_ARM");
  const char* log = getenv("KV_FAULT_LOG");
  long point = NumberOf("KV_FAULT_POINT", 0);
  bool torn = NumberOf("KV_FAULT_TORN", 0) != 0;
  long after = NumberOf("KV_FAULT_AFTER_US", -1);
  std::atomic<long> space{NumberOf("KV_FAULT_SPACE", -1)};
  std::atomic<long> calls{0};
  std::atomic<long> first{0};
};

Plan& ThePlan() {
  static Plan plan;
  return plan;
}

bool Concerns(const char* path) {
  const Plan& plan = ThePlan();
  if (plan.folder.empty() || strncmp(path, plan.folder.c_str(), plan.folder.size()) != 0) {
    return false;
  }
  return plan.arm == nullptr || syscall(SYS_access, plan.arm, F_OK) == 0;
}

void Log(long since, const char* name, const char* path) {
  std::string line = std::to_string(since) + '\t' + name + '\t' + path + '\n';
  const int file = static_cast<int>(syscall(SYS_openat, AT_FDCWD, ThePlan().log,
                                            O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  syscall(SYS_write, file, line.data(), line.size());
  syscall(SYS_close, file);
}

// True when the caller is to write half of its bytes and then call Die().
bool Count(const char* name, const char* path, bool writes = false) {
  if (!Concerns(path)) return false;
  Plan& plan = ThePlan();
  const long number = ++plan.calls;
  const long now = MicrosecondsNow();
  if (number == 1) {
    plan.first = now;
    if (plan.after >= 0) {
      std::thread([wait = plan.after] {
        const timespec time{wait / kMicrosecond, wait % kMicrosecond * 1000};
        syscall(SYS_nanosleep, &time, nullptr);
        Die();
      }).detach();
    }
  }
  if (plan.log != nullptr) Log(now - plan.first, name, path);
  if (number != plan.point) return false;
  if (plan.torn && writes) return true;
  Die();
}

std::string PathOf(int file) {
  char link[64];
  char path[PATH_MAX];
  snprintf(link, sizeof(link), "/proc/self/fd/%d", file);
  const long size = syscall(SYS_readlink, link, path, sizeof(path) - 1);
  return size > 0 ? std::string(path, static_cast<std::size_t>(size)) : std::string();
}

// How many of `size` bytes the folder still takes; -1 when none.
long Room(const std::string& path, std::size_t size) {
  Plan& plan = ThePlan();
  const long wanted = static_cast<long>(std::min<std::size_t>(size, LONG_MAX));
  if (plan.space < 0 || !Concerns(path.c_str())) return wanted;
  const long given = std::min(wanted, plan.space.load());
  plan.space -= given;
  if (given > 0 || wanted == 0) return given;
  errno = ENOSPC;
  return -1;
}

// --- The clock of the wall

std::atomic<long> g_shift{0};  // seconds

void WatchClock(const char* name) {
  std::thread([name] {
    for (;;) {
      if (FILE* file = fopen(name, "r")) {
        long shift = 0;
        if (fscanf(file, "%ld", &shift) == 1) g_shift = shift;
        fclose(file);
      }
      const timespec tenth{0, kNanosecond / 10};
      syscall(SYS_nanosleep, &tenth, nullptr);
    }
  }).detach();
}

__attribute__((constructor)) void Begin() {
  ThePlan();
  if (const char* name = getenv("KV_FAULT_CLOCK")) WatchClock(name);
}

bool Before(const timespec& a, const timespec& b) {
  return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
}

}  // namespace

extern "C" {

ssize_t write(int file, const void* bytes, size_t size) {
  const std::string path = ThePlan().folder.empty() ? std::string() : PathOf(file);
  if (!path.empty()) {
    const long room = Room(path, size);
    if (room < 0) return -1;
    size = static_cast<size_t>(room);
    if (Count("write", path.c_str(), true)) {
      syscall(SYS_write, file, bytes, size / 2);
      Die();
    }
  }
  return syscall(SYS_write, file, bytes, size);
}

ssize_t copy_file_range(int in, off64_t* in_at, int out, off64_t* out_at, size_t size,
                        unsigned flags) {
  const std::string path = PathOf(out);
  const long room = Room(path, size);
  if (room < 0) return -1;
  size = static_cast<size_t>(room);
  if (Count("copy_file_range", path.c_str(), true)) {
    syscall(SYS_copy_file_range, in, in_at, out, out_at, size / 2, flags);
    Die();
  }
  return syscall(SYS_copy_file_range, in, in_at, out, out_at, size, flags);
}

int mkostemp(char* name, int flags) {
  REAL(mkostemp);
  Count("mkostemp", name);
  return real(name, flags);
}

int open(const char* name, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if ((flags & O_ACCMODE) != O_RDONLY) Count("open", name);
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, name, flags, mode));
}

int fsync(int file) {
  Count("fsync", PathOf(file).c_str());
  return static_cast<int>(syscall(SYS_fsync, file));
}

int fchmod(int file, mode_t mode) {
  Count("fchmod", PathOf(file).c_str());
  return static_cast<int>(syscall(SYS_fchmod, file, mode));
}

int futimens(int file, const timespec times[2]) {
  Count("futimens", PathOf(file).c_str());
  return static_cast<int>(syscall(SYS_utimensat, file, nullptr, times, 0));
}

int rename(const char* from, const char* to) {
  Count("rename", to);
  return static_cast<int>(syscall(SYS_rename, from, to));
}

int renameat2(int from_folder, const char* from, int to_folder, const char* to, unsigned flags) {
  Count("renameat2", to);
  return static_cast<int>(syscall(SYS_renameat2, from_folder, from, to_folder, to, flags));
}

int unlink(const char* name) {
  Count("unlink", name);
  return static_cast<int>(syscall(SYS_unlink, name));
}

int clock_gettime(clockid_t clock, timespec* time) {
  const long result = syscall(SYS_clock_gettime, clock, time);
  if (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE) time->tv_sec += g_shift;
  return static_cast<int>(result);
}

int gettimeofday(timeval* time, void* /*zone*/) {
  const timespec now = SystemClock(CLOCK_REALTIME);
  time->tv_sec = now.tv_sec + g_shift;
  time->tv_usec = now.tv_nsec / 1000;
  return 0;
}

time_t time(time_t* result) {
  const time_t now = SystemClock(CLOCK_REALTIME).tv_sec + g_shift;
  if (result != nullptr) *result = now;
  return now;
}

// In slices, so that a wait that has begun before the clock was set ends by the new time.
int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                           const timespec* until) {
  using Wait = int(pthread_cond_t*, pthread_mutex_t*, const timespec*);
  static auto* const real =
      reinterpret_cast<Wait*>(dlvsym(RTLD_NEXT, "pthread_cond_timedwait", "GLIBC_2.3.2"));
  constexpr unsigned kMonotonic = 2;  // where the C library keeps it
  static const bool moved = getenv("KV_FAULT_CLOCK") != nullptr;
  if (!moved || (condition->__data.__wrefs & kMonotonic) != 0) {
    return real(condition, mutex, until);
  }
  for (;;) {
    timespec end = *until;
    end.tv_sec -= g_shift;
    timespec slice = SystemClock(CLOCK_REALTIME);
    slice.tv_nsec += kNanosecond / 20;
    if (slice.tv_nsec >= kNanosecond) {
      slice.tv_nsec -= kNanosecond;
      ++slice.tv_sec;
    }
    const bool last = !Before(slice, end);
    const int result = real(condition, mutex, last ? &end : &slice);
    if (result != ETIMEDOUT || last) return result;
  }
}

}  // extern "C"
