#include "editor/recovery/recovery_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <set>
#include <thread>

#include "common/files.h"
#include "editor/commands/set_info.h"
#include "editor/recovery/recovery_keeper.h"
#include "editor/recovery/recovery_writer.h"
#include "editor/recovery_victim.h"
#include "support/child_process.h"
#include "support/scratch_folder.h"

namespace glimmer {
namespace {

using test::ScratchFolder;

void keepAll(RecoveryWriter& writer) {
    while (writer.work()) {
    }
}

size_t filesIn(const std::filesystem::path& folder, const char* extension) {
    size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        count += entry.path().extension() == extension ? 1 : 0;
    return count;
}

TEST(Recovery, aCaptureComesBackWholeAfterItsRunIsOver) {
    const ScratchFolder folder("recovery whole");
    const auto capture = test::victimCapture();
    std::mt19937 random(11);
    {
        RecoveryStore store(folder.path());
        RecoveryWriter writer(store, *capture);
        for (int i = 0; i < 40; ++i) {
            test::changeSomething(*capture, random);
            if (i % 3 == 0) writer.work();
            if (i % 10 == 0) keepAll(writer);
        }
        ASSERT_TRUE(capture->run(std::make_unique<SetInfo>(SetInfo::Field::Notes, "späte Notiz")));
        EXPECT_TRUE(writer.pending());
        keepAll(writer);
        EXPECT_FALSE(writer.pending());
        RecoveryStore other(folder.path());
        EXPECT_TRUE(other.leftBehind().empty()) << "a run that lives is not a crash";
        EXPECT_EQ(filesIn(folder.path(), ".band"), [&] {
            std::set<const TBitmap*> drawings;
            for (const TBBShape& shape : capture->annotations())
                if (shape.shape.drawing != nullptr) drawings.insert(shape.shape.drawing.get());
            return StoredPicture::bandCount(capture->size()) + drawings.size();
        }()) << "files that are no longer needed are gone";
    }
    RecoveryStore store(folder.path());
    const std::vector<RecoveryStore::Entry> found = store.leftBehind();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].info, capture->info());
    auto opened = RecoveryStore::open(found[0]);
    ASSERT_TRUE(opened) << opened.message();
    EXPECT_TRUE(samePixels((*opened)->background(), capture->background()));
    EXPECT_EQ((*opened)->annotations(), capture->annotations());
    EXPECT_EQ((*opened)->info(), capture->info());
    EXPECT_TRUE((*opened)->modified());

    RecoveryWriter again(store, **opened);
    again.replaces(found[0]);
    EXPECT_EQ(store.leftBehind().size(), 1U) << "kept until the new run keeps it itself";
    keepAll(again);
    EXPECT_TRUE(store.leftBehind().empty());
    while (store.tidy()) {
    }
    EXPECT_EQ(filesIn(folder.path(), ".manifest"), 1U);
    (*opened)->markSaved();
    keepAll(again);
    while (store.tidy()) {
    }
    EXPECT_EQ(filesIn(folder.path(), ".manifest") + filesIn(folder.path(), ".band"), 0U) << "saved: nothing is kept";
}

TEST(Recovery, aLargeCaptureIsKeptInManySmallPieces) {
    const ScratchFolder folder("recovery pieces");
    RecoveryStore store(folder.path());
    TBitmap picture = TBitmap::create(1280, 10000, PixelFormat::Bgra32).take();
    uint32_t seed = 1;
    for (int32_t y = 0; y < picture.height(); ++y)
        for (int32_t x = 0; x < picture.width(); x += 2) picture.setPixel(x, y, (seed = seed * 1664525U + 7U) >> 8U);
    const auto capture = CaptureDocument::create(std::move(picture), {}).take();
    RecoveryWriter writer(store, *capture);
    size_t pieces = 1;
    while (writer.work()) ++pieces;
    EXPECT_FALSE(writer.pending());
    EXPECT_GT(pieces, 90U);
}

TEST(Recovery, damageIsToldAndOpensNothing) {
    const ScratchFolder folder("recovery damage");
    {
        RecoveryStore store(folder.path());
        const auto capture = test::victimCapture();
        RecoveryWriter writer(store, *capture);
        keepAll(writer);
    }
    RecoveryStore store(folder.path());
    const auto found = store.leftBehind();
    ASSERT_EQ(found.size(), 1U);
    std::filesystem::path band;
    for (const auto& entry : std::filesystem::directory_iterator(found[0].folder))
        if (entry.path().extension() == ".band") band = entry.path();
    const std::vector<uint8_t> whole = readFile(band, 1 << 22).take();
    for (const size_t at : {size_t{0}, whole.size() / 2, whole.size() - 1}) {
        std::vector<uint8_t> broken = whole;
        broken[at] ^= 0x40;
        ASSERT_TRUE(writeFile(band, broken));
        EXPECT_FALSE(RecoveryStore::open(found[0]));
    }
    ASSERT_TRUE(writeFile(band, std::span(whole).first(whole.size() - 3)));
    EXPECT_FALSE(RecoveryStore::open(found[0]));
    std::filesystem::remove(band);
    EXPECT_FALSE(RecoveryStore::open(found[0]));

    const std::filesystem::path list = found[0].folder / "capture.manifest";
    const std::vector<uint8_t> manifest = readFile(list, 1 << 22).take();
    for (size_t length = 0; length < manifest.size(); length += 1 + manifest.size() / 60)
        EXPECT_FALSE(decodeManifest(std::span(manifest).first(length)));
    for (size_t at = 0; at < manifest.size(); at += 1 + manifest.size() / 200) {
        std::vector<uint8_t> broken = manifest;
        broken[at] ^= 0x10;
        EXPECT_FALSE(decodeManifest(broken));
    }
    ASSERT_TRUE(decodeManifest(manifest));
}

std::set<std::filesystem::path> manifestsIn(const std::filesystem::path& folder) {
    std::set<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".manifest") found.insert(entry.path());
    return found;
}

/// Leaves a capture behind in a folder, as a run that was killed does; the manifest's path.
std::filesystem::path leaveOne(const std::filesystem::path& folder) {
    RecoveryStore store(folder);
    const std::set<std::filesystem::path> before = manifestsIn(folder);
    const auto capture = test::victimCapture();
    RecoveryWriter writer(store, *capture);
    keepAll(writer);
    for (const std::filesystem::path& path : manifestsIn(folder))
        if (!before.contains(path)) return path;
    return {};
}

// Nothing is removed because it cannot be read now, and nothing that the program did not make.
TEST(Recovery, whatCannotBeReadStays) {
    const ScratchFolder folder("recovery unreadable");
    const std::filesystem::path damaged = leaveOne(folder.path());
    const std::filesystem::path newer = leaveOne(folder.path());
    ASSERT_NE(damaged, newer);
    const auto change = [](const std::filesystem::path& path, size_t at) {
        std::vector<uint8_t> data = readFile(path, maxManifestBytes).take();
        data[at] = 77;
        ASSERT_TRUE(writeFile(path, data));
    };
    change(damaged, 40);
    change(newer, 4);  // its version
    const std::filesystem::path unfinished = damaged.parent_path().parent_path() / "capture9";
    const std::vector<std::filesystem::path> others{folder.path() / "run1 - Copy", folder.path() / "backup",
                                                    damaged.parent_path().parent_path() / "captures"};
    std::filesystem::create_directories(unfinished);
    for (const auto& other : others) std::filesystem::create_directories(other / "inside");
    {
        RecoveryStore store(folder.path());
        const auto found = store.leftBehind();
        ASSERT_EQ(found.size(), 1U) << "the damaged one is offered, the newer one is not ours";
        EXPECT_FALSE(found[0].info.name.empty());
        EXPECT_FALSE(RecoveryStore::open(found[0]));
        EXPECT_FALSE(std::filesystem::exists(unfinished));
    }
    for (const auto& path : {damaged, newer}) EXPECT_TRUE(std::filesystem::exists(path)) << path;
    for (const auto& path : others) EXPECT_TRUE(std::filesystem::exists(path / "inside")) << path;
}

// What the picture showed before a change is gone with the manifest that no longer names it, or at the next start.
TEST(Recovery, formerBandsGo) {
    const ScratchFolder folder("recovery former");
    const std::filesystem::path capture = leaveOne(folder.path()).parent_path();
    ASSERT_TRUE(writeFile(capture / "4711.band", std::vector<uint8_t>(100)));
    ASSERT_TRUE(writeFile(capture / "~gp1-1.tmp", std::vector<uint8_t>(100)));
    const size_t named = filesIn(capture, ".band") - 1;
    RecoveryStore store(folder.path());
    const auto found = store.leftBehind();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(filesIn(capture, ".band"), named);
    EXPECT_EQ(filesIn(capture, ".tmp"), 0U);

    auto opened = RecoveryStore::open(found[0]).take();
    RecoveryWriter writer(store, *opened);
    keepAll(writer);
    std::mt19937 random(5);
    // The user goes on without a pause, so that the capture is never at rest.
    for (int i = 0; i < 30; ++i) {
        test::changeSomething(*opened, random);
        writer.work();
        const auto manifest = decodeManifest(readFile(*manifestsIn(folder.path()).rbegin(), maxManifestBytes).take());
        size_t bands = manifest->background.bands.size();
        for (const StoredPicture& drawing : manifest->drawings) bands += drawing.bands.size();
        EXPECT_LE(filesIn(capture.parent_path().parent_path() / "run2", ".band"), bands + 1);
        while (writer.pending()) writer.work();
    }
}

TEST(Recovery, whatEarlierVersionsKeptElsewhereIsTakenOver) {
    const ScratchFolder scratch("recovery moves");
    const std::filesystem::path former = scratch.path() / "roaming" / "recovery";
    const std::filesystem::path folder = scratch.path() / "local" / "recovery";
    leaveOne(former);
    leaveOne(former);
    leaveOne(folder);
    std::optional<RecoveryStore> alive(former);
    const std::filesystem::path kept = alive->makeCaptureFolder();
    for (const size_t expected : {size_t{3}, size_t{3}}) {
        RecoveryStore store(folder);
        store.takeOver(former);
        const auto found = store.leftBehind();
        ASSERT_EQ(found.size(), expected);
        for (const auto& entry : found) EXPECT_TRUE(RecoveryStore::open(entry));
        EXPECT_TRUE(std::filesystem::exists(kept)) << "of a run that lives";
    }
    EXPECT_EQ(filesIn(former, ".manifest"), 0U);
    alive.reset();
    RecoveryStore(folder).takeOver(former);
    EXPECT_FALSE(std::filesystem::exists(former));
}

size_t takeNothing(const void* /*data*/, size_t /*size*/, size_t /*count*/, std::FILE* /*file*/) { return 0; }

TEST(Recovery, aDiskThatRefusesIsTriedAgain) {
    const ScratchFolder folder("recovery again");
    RecoveryStore store(folder.path());
    for (const std::chrono::milliseconds retry : {std::chrono::milliseconds(0), std::chrono::milliseconds(3600000)}) {
        const auto capture = test::victimCapture();
        RecoveryWriter writer(store, *capture, retry);
        setFileWriter(takeNothing);
        EXPECT_FALSE(writer.work());
        setFileWriter(nullptr);
        EXPECT_EQ(writer.pending(), retry.count() == 0) << "not at once, and not only with the next change";
        keepAll(writer);
        EXPECT_EQ(filesIn(folder.path(), ".manifest"), retry.count() == 0 ? 1U : 0U);
        writer.remove();
    }
}

// Saved before the first state was whole: nothing may be offered as unsaved.
TEST(Recovery, whatIsSavedEarlyLeavesNothing) {
    const ScratchFolder folder("recovery early");
    leaveOne(folder.path());
    RecoveryStore store(folder.path());
    const auto found = store.leftBehind();
    ASSERT_EQ(found.size(), 1U);
    auto opened = RecoveryStore::open(found[0]).take();
    RecoveryWriter writer(store, *opened);
    writer.replaces(found[0]);
    writer.work();  // one band
    opened->markSaved();
    EXPECT_TRUE(writer.pending());
    keepAll(writer);
    EXPECT_FALSE(writer.pending());
    while (store.tidy()) {
    }
    EXPECT_EQ(filesIn(folder.path(), ".manifest") + filesIn(folder.path(), ".band"), 0U);
}

/// A disk that takes its time for what a thread of its own writes through.
struct SlowDisk {
    static inline std::atomic<bool> busy, held;
    static inline std::thread::id user;
    static bool flush(std::FILE* file) {
        if (std::this_thread::get_id() == user) return flushToDisk(file);
        busy = true;
        held.wait(true);
        return flushToDisk(file);
    }
};

TEST(Recovery, theEndOfTheSessionDoesNotWaitForTheDisk) {
    const ScratchFolder folder("recovery hurry");
    FileOperations slow = portableFileOperations();
    slow.flush = SlowDisk::flush;
    SlowDisk::user = std::this_thread::get_id();
    SlowDisk::held = true;
    setFileOperations(&slow);
    const auto capture = test::victimCapture();
    {
        RecoveryKeeper keeper(folder.path());
        keeper.add(*capture);
        while (!SlowDisk::busy) keeper.work({});
        EXPECT_TRUE(keeper.keepAll(std::chrono::minutes(1)));
        SlowDisk::held = false;
        SlowDisk::held.notify_all();
    }
    setFileOperations(nullptr);
    EXPECT_EQ(filesIn(folder.path(), ".manifest"), 1U);
}

// Folders with something in them cannot be removed like files; there is an end to trying.
TEST(Recovery, whatCannotBeRemovedHoldsNothingUp) {
    const ScratchFolder folder("recovery stuck");
    RecoveryStore store(folder.path());
    const std::filesystem::path capture = store.makeCaptureFolder();
    for (int i = 0; i < 20; ++i) std::filesystem::create_directories(capture / (std::to_string(i) + ".band") / "in");
    store.toss(capture);
    int rounds = 0;
    while (store.tidy() && rounds < 20) ++rounds;
    EXPECT_LT(rounds, 20);
}

std::vector<std::string> linesOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        if (!file.eof()) lines.push_back(line);  // the last line may be cut short
    return lines;
}

// The program is killed at fifty seeded moments. Each time the folder holds nothing, if nothing was safe yet, or a
// state that the program really had, no older than the last one it knew to be safe.
TEST(Recovery, whateverTheMomentOfDeathAWholeRecentStateIsThere) {
    int recovered = 0;
    for (int seed = 0; seed < 50; ++seed) {
        SCOPED_TRACE(seed);
        const ScratchFolder scratch("recovery kill");
        const std::filesystem::path folder = scratch.path() / "store";
        const std::filesystem::path log = scratch.path() / "log";
        {
            test::ChildProcess victim(test::testProgram("recovery_victim"), {folder, log, std::to_string(seed)});
            // The moment: after a seeded number of lines, then a seeded fraction of a millisecond.
            std::mt19937 random(static_cast<unsigned>(seed));
            const size_t lines = 1 + random() % 60;
            const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
            while (linesOf(log).size() < lines) {
                ASSERT_TRUE(victim.running());
                ASSERT_LT(std::chrono::steady_clock::now(), limit);
                std::this_thread::yield();
            }
            const auto moment = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 3000);
            while (std::chrono::steady_clock::now() < moment) {
            }
            victim.kill();
        }
        const std::vector<std::string> lines = linesOf(log);
        std::vector<std::string> states;
        size_t safe = 0;
        bool anySafe = false;
        for (const std::string& line : lines) {
            if (line.starts_with("state ")) states.push_back(line.substr(6));
            if (line.starts_with("kept ")) safe = states.size() - 1, anySafe = true;
        }
        RecoveryStore store(folder);
        const auto found = store.leftBehind();
        ASSERT_LE(found.size(), 1U);
        if (found.empty()) {
            EXPECT_FALSE(anySafe);
            continue;
        }
        ++recovered;
        auto opened = RecoveryStore::open(found[0]);
        ASSERT_TRUE(opened) << opened.message();
        char hash[32];
        std::snprintf(hash, sizeof hash, "%llx", static_cast<unsigned long long>(test::stateHash(**opened)));
        // The state that was being reached when the end came may not have been logged.
        const auto at = std::find(states.begin() + static_cast<std::ptrdiff_t>(safe), states.end(), hash);
        EXPECT_NE(at, states.end());
    }
    EXPECT_GT(recovered, 20);
}

}  // namespace
}  // namespace glimmer
