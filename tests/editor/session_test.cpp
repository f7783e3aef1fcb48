#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "editor/commands/set_info.h"
#include "editor/session/capture_session.h"
#include "support/pictures.h"
#include "support/scratch_folder.h"
#include "support/shy_memory.h"

// The captures that are open together, as a main window and its canvas see them.

namespace glimmer {
namespace {

using Captures = CaptureSession::Captures;
using testing::ElementsAre;
using testing::IsEmpty;

class Stage : public CaptureStage {
public:
    [[nodiscard]] bool free() const override { return !busy; }
    void show(CaptureDocument& capture) override {
        EXPECT_FALSE(capture.parked());
        shown = &capture;
        ++shows;
    }
    void clear() override { shown = nullptr; }
    CaptureDocument* shown = nullptr;
    bool busy = false;
    int shows = 0;
};

/// A list that knows of the session what it is told.
class List : public SessionListener {
public:
    explicit List(const CaptureSession& session) : session_(session) {}
    std::vector<std::string> names;
    const CaptureDocument* chosen = nullptr;
    std::vector<std::string> noRoom;

private:
    void captureAdded(size_t place) override {
        chosen = &session_.at(place);
        names.insert(names.begin() + static_cast<std::ptrdiff_t>(place), chosen->info().name);
    }
    void captureRemoved(size_t place, const CaptureDocument& capture) override {
        EXPECT_EQ(names.at(place), capture.info().name);
        names.erase(names.begin() + static_cast<std::ptrdiff_t>(place));
    }
    void captureMoved(size_t from, size_t to) override {
        const std::string name = names.at(from);
        names.erase(names.begin() + static_cast<std::ptrdiff_t>(from));
        names.insert(names.begin() + static_cast<std::ptrdiff_t>(to), name);
    }
    void captureChanged(const CaptureDocument& capture, const DocumentChange& change) override {
        if (change.info) names.at(session_.placeOf(capture)) = capture.info().name;
    }
    void currentChanged() override { chosen = session_.current(); }
    void currentStays() override { chosen = session_.current(); }
    void noRoomFor(const CaptureDocument& capture) override { noRoom.push_back(capture.info().name); }

    const CaptureSession& session_;
};

class Session : public testing::Test {
protected:
    Session() {
        setPixelAllocator(test::ShyMemory::make);
        session_.setStage(stage_);
        session_.listen(list_);
    }
    ~Session() override {
        test::ShyMemory::refused = false;
        session_.discardAll();
        setPixelAllocator(nullptr);
    }

    CaptureDocument& add(const std::string& name, CaptureSession* session = nullptr) {
        CaptureInfo info;
        info.name = name;
        auto capture = CaptureDocument::create(test::plain(4, 3, rgb(1, 2, 3)), info).take();
        return (session != nullptr ? *session : session_).add(std::move(capture));
    }
    void addAll(const std::vector<std::string>& names) {
        for (const std::string& name : names) add(name);
    }
    [[nodiscard]] std::string current() const {
        return session_.current() != nullptr ? session_.current()->info().name : "";
    }
    void expectOrder(const std::vector<std::string>& names) const {
        EXPECT_EQ(list_.names, names);
        std::vector<std::string> all;
        for (const CaptureDocument* capture : session_.all()) all.push_back(capture->info().name);
        EXPECT_EQ(all, names);
    }

    test::ScratchFolder folder_{"session"};
    Stage stage_;
    CaptureSession session_{folder_.path()};
    List list_{session_};
};

// Whatever is done, in whatever order: the list follows, the stage shows the current capture, and only that one has
// addresses.
TEST_F(Session, KeepsListStageAndMemoryTogether) {
    std::mt19937 random(5);
    const auto below = [&random](size_t limit) { return random() % limit; };
    for (int step = 0; step < 3000; ++step) {
        const size_t count = session_.size();
        if (count == 0 || (count < 9 && below(3) == 0)) {
            add("capture " + std::to_string(step));
        } else if (below(4) == 0) {
            Captures doomed;
            for (CaptureDocument* capture : session_.all())
                if (below(3) == 0) doomed.push_back(capture);
            session_.remove(doomed);
        } else if (below(2) == 0) {
            session_.move(below(count + 1), below(count + 1));
        } else {
            session_.show(session_.at(below(count)));
        }
        stage_.busy = below(3) == 0;
        session_.showDue();
        if (stage_.busy) session_.parkOthers();  // one that came meanwhile
        ASSERT_EQ(stage_.shown, session_.current());
        ASSERT_EQ(session_.empty(), session_.current() == nullptr);
        ASSERT_TRUE(stage_.busy || !session_.due());
        for (size_t place = 0; place < session_.size(); ++place) {
            ASSERT_EQ(list_.names.at(place), session_.at(place).info().name);
            ASSERT_EQ(session_.at(place).parked(), &session_.at(place) != session_.current());
        }
        ASSERT_EQ(list_.names.size(), session_.size());
    }
}

TEST_F(Session, ShowsTheNextOneInsteadOfTheOneThatGoes) {
    addAll({"a", "b", "c", "d", "e"});
    EXPECT_EQ(current(), "e");
    const auto goes = [this](const std::vector<size_t>& places) {
        Captures doomed;
        for (const size_t place : places) doomed.push_back(&session_.at(place));
        session_.remove(doomed);
        EXPECT_EQ(list_.chosen, session_.current());
        return current();
    };
    session_.show(session_.at(1));
    EXPECT_EQ(goes({1}), "c");
    EXPECT_EQ(goes({3, 1}), "d") << "behind the first that goes";
    EXPECT_EQ(goes({0}), "d") << "another one";
    EXPECT_EQ(goes({0}), "");
    addAll({"f", "g"});
    EXPECT_EQ(goes({1}), "f") << "at the end the one before";
    add("h");
    session_.move(1, 0);
    expectOrder({"h", "f"});
    EXPECT_EQ(current(), "h");
    session_.move(0, 2);
    session_.move(2, 0);
    expectOrder({"h", "f"});
}

TEST_F(Session, WaitsWithTheStageForWhatTheUserIsInTheMiddleOf) {
    add("a");
    stage_.busy = true;
    CaptureDocument& arrived = add("b");
    expectOrder({"a", "b"});
    EXPECT_EQ(list_.chosen, &arrived);
    EXPECT_EQ(current(), "a");
    session_.showDue();
    EXPECT_EQ(current(), "a");
    add("c");
    stage_.busy = false;
    session_.showDue();
    EXPECT_EQ(current(), "c") << "the last one that came";
    // One that goes before it was shown.
    stage_.busy = true;
    session_.remove({&add("d")});
    EXPECT_FALSE(session_.due());
    EXPECT_EQ(list_.chosen, session_.current());
    stage_.busy = false;
    // Several at once.
    const int before = stage_.shows;
    {
        const CaptureSession::Together together(session_);
        addAll({"e", "f", "g"});
        EXPECT_EQ(current(), "c");
    }
    session_.showDue();
    EXPECT_EQ(current(), "g");
    EXPECT_EQ(stage_.shows, before + 1);
}

TEST_F(Session, StaysOnTheCaptureBeforeWhenThereIsNoRoom) {
    addAll({"a", "b", "c"});
    test::ShyMemory::refused = true;
    session_.show(session_.at(0));
    EXPECT_EQ(current(), "c");
    EXPECT_EQ(list_.chosen, session_.current());
    EXPECT_THAT(list_.noRoom, ElementsAre("a"));
    session_.remove({&session_.at(2)});
    EXPECT_EQ(session_.current(), nullptr) << "nor is there room for another";
    EXPECT_EQ(stage_.shown, nullptr);
    test::ShyMemory::refused = false;
    session_.show(session_.at(0));
    EXPECT_EQ(current(), "a");
}

TEST_F(Session, NamesAreTrimmedCutAndNeverBlank) {
    CaptureDocument& capture = add("old");
    const std::pair<std::string, std::string> cases[] = {{" n\xC3\xA9w\t", "n\xC3\xA9w"},
                                                         {"", "n\xC3\xA9w"},
                                                         {" \r\n", "n\xC3\xA9w"},
                                                         {std::string(240, 'x'), std::string(200, 'x')}};
    for (const auto& [typed, name] : cases) {
        ASSERT_TRUE(session_.rename(capture, typed));
        expectOrder({name});
    }
    for (const char* before : {"n\xC3\xA9w", "old"}) {
        ASSERT_TRUE(capture.undo());
        expectOrder({before});
    }
    EXPECT_FALSE(capture.history().canUndo()) << "what changes nothing is no step";
}

TEST_F(Session, KnowsWhetherItsProjectHasChanged) {
    addAll({"a", "b"});
    EXPECT_FALSE(session_.projectHasChanged()) << "there is none";
    const std::function<void()> changes[] = {[this] { add("c"); }, [this] { session_.move(0, 1); },
                                             [this] { session_.remove({&session_.at(0)}); }};
    for (const auto& change : changes) {
        session_.setProject("p.gmp");
        EXPECT_FALSE(session_.projectHasChanged());
        change();
        EXPECT_TRUE(session_.projectHasChanged());
    }
    session_.setProject("p.gmp");
    session_.show(session_.at(0));
    EXPECT_FALSE(session_.projectHasChanged());
    session_.remove(session_.all());
    add("d");
    EXPECT_EQ(session_.projectPath(), "") << "what comes next has nothing to do with it";
    EXPECT_FALSE(session_.projectHasChanged());
}

TEST_F(Session, AQuestionCoversWhatWasOpenAndUnsavedThen) {
    CaptureDocument& saved = add("a");
    CaptureDocument& unsaved = add("b");
    saved.markSaved();
    EXPECT_EQ(session_.unsaved(), Captures{&unsaved});
    const CaptureSession::State asked(session_);
    EXPECT_TRUE(asked.covers(CaptureSession::State(session_)));
    ASSERT_TRUE(session_.rename(saved, "A"));
    EXPECT_FALSE(asked.covers(CaptureSession::State(session_))) << "unsaved since";
    saved.markSaved();
    add("c").markSaved();
    EXPECT_FALSE(asked.covers(CaptureSession::State(session_))) << "new";
    session_.remove({&session_.at(2), &unsaved});
    EXPECT_TRUE(asked.covers(CaptureSession::State(session_))) << "less is covered";
}

// What an end without a question leaves behind: what was worked on and not saved.
TEST_F(Session, KeepsWhatWasWorkedOnForTheNextStart) {
    const auto work = [](CaptureDocument& capture) {
        ASSERT_TRUE(capture.run(std::make_unique<SetInfo>(SetInfo::Field::Notes, "a note")));
    };
    const auto leftBehind = [this](const std::function<void(CaptureSession&)>& use) {
        Stage stage;
        {
            CaptureSession session(folder_.path());
            session.setStage(stage);
            use(session);
        }
        return session_.recovery().store().leftBehind();
    };
    const auto open = [&](CaptureSession& session) {
        work(add("worked on", &session));
        add("untouched", &session);
        CaptureDocument& saved = add("saved", &session);
        work(saved);
        saved.markSaved();
    };
    EXPECT_THAT(leftBehind([&](CaptureSession& session) {
                    open(session);
                    session.discardAll();
                }),
                IsEmpty());
    const auto kept = leftBehind([&](CaptureSession& session) {
        open(session);
        session.discardAll(true);
    });
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].info.name, "worked on");
    EXPECT_EQ(leftBehind(open).size(), 2U) << "nor does one that is simply left";
    // Opened again it is unsaved, and an end keeps it though it was not touched since.
    CaptureDocument& again = session_.add(RecoveryStore::open(kept[0]).take(), kept[0]);
    EXPECT_EQ(again.info().notes, "a note");
    EXPECT_TRUE(again.modified());
    session_.discardAll(true);
    EXPECT_EQ(RecoveryStore(folder_.path()).leftBehind().size(), 0U) << "a run that lives is not a crash";
}

}  // namespace
}  // namespace glimmer
