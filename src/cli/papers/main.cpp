// usage: cli_papers < TEMPLATE
// Prints a paper that is installed beside lumirra-cli: the template with its marks replaced by what
// the program's own tables hold. Used by the build alone.
#include <cstdio>
#include <iostream>
#include <iterator>
#include <string>

#include "cli/papers/Completions.h"
#include "cli/papers/ManPage.h"

int main() {
    const std::string read(std::istreambuf_iterator<char>(std::cin), {});
    QString page = QString::fromStdString(read);
    lumirra::FillCompletions(page);
    lumirra::FillManPage(page);
    const bool written = std::fputs(page.toUtf8().constData(), stdout) >= 0;
    return !read.empty() && written && std::fflush(stdout) == 0 ? 0 : 1;
}
