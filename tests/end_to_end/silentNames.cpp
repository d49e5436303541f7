#include <cstdio>
#include <cstdlib>
#include <netdb.h>
#include <unistd.h>

/// Put before the system's own, this lets every look-up of a name wait for ever, as where the network has no
/// one who knows names. The file that QUILMORA_LOOKUP_MARK names is made as soon as one has begun.
extern "C" int getaddrinfo(const char * /*node*/, const char * /*service*/, const addrinfo * /*hints*/,
                           addrinfo ** /*found*/)
{
    if (const char *mark = std::getenv("QUILMORA_LOOKUP_MARK")) {
        if (std::FILE *file = std::fopen(mark, "w")) {
            std::fclose(file);
        }
    }
    while (true) {
        pause();
    }
}
