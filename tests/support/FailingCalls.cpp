// A library to be loaded before a program (LD_PRELOAD), in which chosen calls fail:
//   FAIL_CALL   the calls: "malloc" (all that give memory) or "pthread_create"
//   FAIL_FROM   the number of the first call that fails, 1 being the first
//   FAIL_COUNT  how many fail from there on; all when absent
//   FAIL_BYTES  for memory: only calls that ask for as much count
//   FAIL_MARK   a file that is made when a call fails
#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* old, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

long Number(const char* name, long otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::strtol(text, nullptr, 10) : otherwise;
}

/// One kind of call, and what the environment says of it when the first is made.
class Failing {
  public:
    explicit Failing(const char* call) {
        const char* const named = std::getenv("FAIL_CALL");
        chosen_ = named != nullptr && std::strcmp(named, call) == 0;
    }

    bool Now(std::size_t bytes) {
        if (!chosen_ || bytes < least_) {
            return false;
        }
        const long number = ++calls_;
        if (number < from_ || number - from_ >= count_) {
            return false;
        }
        if (const char* const mark = std::getenv("FAIL_MARK")) {
            close(open(mark, O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        }
        return true;
    }

  private:
    bool chosen_ = false;
    const std::size_t least_ = static_cast<std::size_t>(Number("FAIL_BYTES", 0));
    const long from_ = Number("FAIL_FROM", 1);
    const long count_ = Number("FAIL_COUNT", LONG_MAX);
    std::atomic<long> calls_ = 0;
};

bool MemoryFails(std::size_t bytes) {
    static Failing memory("malloc");
    if (!memory.Now(bytes)) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
    return MemoryFails(size) ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    return MemoryFails(count * size) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* old, std::size_t size) {
    return MemoryFails(size) ? nullptr : __libc_realloc(old, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return MemoryFails(size) ? nullptr : __libc_memalign(alignment, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
    return MemoryFails(size) ? nullptr : __libc_memalign(alignment, size);
}

int posix_memalign(void** made, std::size_t alignment, std::size_t size) {
    if (MemoryFails(size)) {
        return ENOMEM;
    }
    void* const memory = __libc_memalign(alignment, size);
    *made = memory != nullptr ? memory : *made;
    return memory != nullptr ? 0 : ENOMEM;
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                   void* argument) {
    static Failing threads("pthread_create");
    static const auto real =
        reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return threads.Now(0) ? EAGAIN : real(thread, attributes, start, argument);
}
}
