// The settings file.

#include "fuzz/fuzz.h"
#include "settings/cached_mem_ini_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    TCachedMemIniFile store = TCachedMemIniFile::parse({data, size});
    for (const std::string& section : store.readSections()) {
        FUZZ_CHECK(store.sectionExists(section));
        for (const std::string& key : store.readKeys(section)) {
            const std::string value = store.readString(section, key);
            const int32_t number = store.readInteger(section, key, 5, 1, 9);
            FUZZ_CHECK(number >= 1 && number <= 9);
            static_cast<void>(store.readBool(section, key, false));
            store.writeString(section, key, value);
            FUZZ_CHECK(store.readString(section, key) == value);
        }
    }
    return 0;
}
