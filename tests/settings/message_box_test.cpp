#include "settings/message_box.h"

#include <gtest/gtest.h>

#include "settings/options.h"
#include "settings/settings_path.h"
#include "support/recorded_messages.h"

namespace glimmer {
namespace {

const Message question{"Open it?", "Saved", MessageIcon::Question, MessageButtons::YesNo};
const Message notice{"Done.", "Copied", MessageIcon::Information};

class RememberedAnswer : public testing::Test {
protected:
    void SetUp() override {
        setSettingsPath("");
        OptionsHolder() = Options();
    }
    test::RecordedMessages boxes_;
};

TEST_F(RememberedAnswer, IsKeptOnlyWhenTheCheckBoxSaysSo) {
    const struct {
        const char* key;
        const Message& message;
        MessageAnswer answer;
        bool check;
        int32_t kept;
    } cases[] = {
        {"cmbOpenFolderAfterSaving", question, MessageAnswer::Yes, false, 0},
        {"cmbOpenFolderAfterSaving", question, MessageAnswer::Yes, true, 1},
        {"cmbDeleteCaptures", question, MessageAnswer::No, true, 2},
        {"cmbConfirmExit", question, MessageAnswer::Cancel, true, 0},
        {"cmbCopiedSuccessfullyMessage", notice, MessageAnswer::Ok, true, 1},
        {"cmbLoadingFilesViaDDropHint", notice, MessageAnswer::Ok, false, 0},
    };
    for (const auto& c : cases) {
        const size_t before = boxes_.messages.size();
        boxes_.answers = {{c.answer, c.check}};
        EXPECT_EQ(showRemembered(c.key, c.message), c.answer) << c.key;
        EXPECT_EQ(boxes_.messages.size(), before + 1) << c.key;
        EXPECT_FALSE(boxes_.messages.back().checkBox.empty());
        EXPECT_EQ(OptionsHolder().number(c.key), c.kept) << c.key;
        // A kept answer comes without a box; otherwise the next box is closed.
        const MessageAnswer expected = c.kept != 0 ? c.answer : closingAnswer(c.message.buttons);
        EXPECT_EQ(showRemembered(c.key, c.message), expected) << c.key;
        EXPECT_EQ(boxes_.messages.size(), before + (c.kept != 0 ? 1 : 2)) << c.key;
    }
}

}  // namespace
}  // namespace glimmer
