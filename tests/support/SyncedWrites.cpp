// A library to be loaded before a program (LD_PRELOAD) that notes in the file SYNC_LOG what of the
// program's files would outlive a loss of power:
//   F INODE SIZE        the file's content up to there was put on the disk
//   D FOLDER            its names were, which are:
//   N INODE NAME
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

void Note(const std::string& lines) {
    const char* const path = std::getenv("SYNC_LOG");
    const int log =
        path != nullptr ? open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600) : -1;
    if (log < 0 || write(log, lines.data(), lines.size()) != static_cast<ssize_t>(lines.size())) {
        std::abort();  // a note that is lost would pass for a fault of the program
    }
    close(log);
}

std::string NamesIn(int folder) {
    std::array<char, 4096> path{};
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    if (readlink(link.c_str(), path.data(), path.size() - 1) < 0) {
        return {};
    }
    std::string lines = "D " + std::string(path.data()) + "\n";
    const std::unique_ptr<DIR, int (*)(DIR*)> names(opendir(path.data()), closedir);
    while (const dirent* const entry = names ? readdir(names.get()) : nullptr) {
        lines += "N " + std::to_string(entry->d_ino) + " " + entry->d_name + "\n";
    }
    return lines;
}

}  // namespace

extern "C" int fsync(int file) {
    static const auto real = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "fsync"));
    const int result = real(file);
    struct stat status {};
    if (result == 0 && fstat(file, &status) == 0) {
        Note(S_ISDIR(status.st_mode) ? NamesIn(file)
                                     : "F " + std::to_string(status.st_ino) + " " +
                                           std::to_string(status.st_size) + "\n");
    }
    return result;
}
