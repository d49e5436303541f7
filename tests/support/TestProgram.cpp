#include "support/TestProgram.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

namespace quilmora::test {
namespace {

using Registry = std::map<std::string, TestRegistration::Run>;

Registry &registry()
{
    static Registry classes;
    return classes;
}

} // namespace

TestRegistration::TestRegistration(const char *name, Run run) { registry().emplace(name, run); }

} // namespace quilmora::test

int main(int argc, char **argv)
{
    const auto &classes = quilmora::test::registry();
    const auto found = argc < 2 ? classes.end() : classes.find(argv[1]);
    if (found == classes.end()) {
        std::fputs("The first argument must be one of:\n", stderr);
        for (const auto &[name, run] : classes) {
            std::fprintf(stderr, "  %s\n", name.c_str());
        }
        return 1;
    }
    std::rotate(argv + 1, argv + 2, argv + argc);
    argv[argc - 1] = nullptr;
    return found->second(argc - 1, argv);
}
