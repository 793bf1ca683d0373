// The message console: storage, echo format and levels.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "diagnostics/FltWarningMessageConsole.h"

using Console = FltWarningMessageConsole;

class ConsoleTest : public ::testing::Test {
protected:
    void SetUp() override { Console::clearMessages(); }
    void TearDown() override { Console::clearMessages(); }
};

TEST_F(ConsoleTest, echoAndListingFormats_warningLevelFiltersNothing)
{
    CaptureStream err(std::cerr);
    Console::setWarningLevel(3);  // stored, but filters nothing
    char buffer[16] = "temporary";  // copied: callers pass text formatted into temporary buffers
    Console::notifyMessage(buffer, 3, false);
    buffer[0] = 'X';
    Console::notifyMessage("WARNING ! low", 1, true);
    const std::string echo = "WARNING ! low\n(Warning Level: 1)\n\n";
    EXPECT_EQ(err.text(), echo);
    Console::showMessagesConsole(4);
    Console::showMessagesConsole(3);  // from level 3 on, without the blank line
    EXPECT_EQ(err.text(), echo + "temporary\n(Warning Level: 3)\n");
    Console::setWarningLevel(0);
}

TEST_F(ConsoleTest, repeatsWithinAConversionAreCappedAndSummedUpAtItsEnd)
{
    const size_t cap = Console::kMaxRepeats;
    CaptureStream err(std::cerr);
    Console::beginConversion();
    Console::beginConversion();  // a nested conversion shares the count
    for (size_t i = 0; i < cap + 5; ++i) Console::notifyMessage("WARNING ! again", 3, false);
    Console::notifyMessage("WARNING ! other", 2, false);
    Console::endConversion();
    EXPECT_EQ(Console::getMessages().size(), cap + 1);
    Console::endConversion();
    const auto& all = Console::getMessages();
    ASSERT_EQ(all.size(), cap + 2);
    EXPECT_EQ(all.back().message, "WARNING ! The message \"WARNING ! again\" came 5 more times and was not repeated");
    EXPECT_EQ(all.back().level, 3);
    // Outside a conversion nothing is capped.
    for (size_t i = 0; i < cap + 5; ++i) Console::notifyMessage("WARNING ! again", 3, false);
    EXPECT_EQ(all.size(), 2 * cap + 7);
    EXPECT_EQ(err.text(), "");
}
