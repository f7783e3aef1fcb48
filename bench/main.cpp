// glimmer_bench [GROUP...]: runs all groups of benchmarks or those named.

#include <cstdio>
#include <cstring>
#include <exception>

#include "harness.h"

int main(int argc, char** argv) {
    const struct {
        const char* name;
        void (*run)();
    } groups[] = {
        {"effects", glimmer::bench::effects}, {"files", glimmer::bench::files},     {"editor", glimmer::bench::editor},
        {"screen", glimmer::bench::screen},   {"answers", glimmer::bench::answers},
    };
    try {
        for (const auto& group : groups) {
            bool wanted = argc < 2;
            for (int i = 1; i < argc; ++i) wanted = wanted || std::strcmp(argv[i], group.name) == 0;
            if (wanted) group.run();
        }
        glimmer::bench::printGoals();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "glimmer_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
