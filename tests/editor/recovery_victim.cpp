// Works on a capture and keeps it in a recovery folder until it is killed. Arguments: folder, log file, seed. The log
// has a line "state HASH" before each state comes into being and "kept HASH" after one is safe.

#include <cstdio>
#include <cstdlib>

#include "common/files.h"
#include "editor/recovery/recovery_writer.h"
#include "recovery_victim.h"

int main(int count, char** arguments) {
    using namespace glimmer;
    if (count != 4) return 2;
    std::FILE* log = std::fopen(arguments[2], "wb");
    if (log == nullptr) return 3;
    // Line by line to the system, so that nothing is lost with the process.
    std::setvbuf(log, nullptr, _IONBF, 0);
    std::mt19937 random(static_cast<unsigned>(std::strtoul(arguments[3], nullptr, 10)));
    RecoveryStore store(pathFromUtf8(arguments[1]));
    const auto capture = test::victimCapture();
    RecoveryWriter writer(store, *capture);
    std::fprintf(log, "state %llx\n", static_cast<unsigned long long>(test::stateHash(*capture)));
    for (;;) {
        // Sometimes the user goes on before everything is kept.
        for (auto pieces = random() % 40; pieces > 0; --pieces) {
            const bool pending = writer.pending();
            const bool more = writer.work();
            if (pending && !writer.pending())
                std::fprintf(log, "kept %llx\n", static_cast<unsigned long long>(test::stateHash(*capture)));
            if (!more) break;
        }
        test::changeSomething(*capture, random);
        std::fprintf(log, "state %llx\n", static_cast<unsigned long long>(test::stateHash(*capture)));
    }
}
