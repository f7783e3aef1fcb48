// The second process of a test: file_racer FOLDER COUNT; its exit code is how many files it wrote.

#include "common/file_racer.h"

int main(int count, char** arguments) {
    if (count != 3) return 255;
    return glimmer::test::writeWithoutOverwriting(glimmer::pathFromUtf8(arguments[1]), std::stoi(arguments[2]), 2);
}
