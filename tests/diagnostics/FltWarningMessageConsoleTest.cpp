// The message console: storage, echo format and levels.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "diagnostics/FltWarningMessageConsole.h"

class ConsoleTest : public ::testing::Test {
protected:
    void SetUp() override { FltWarningMessageConsole::clearMessages(); }
    void TearDown() override { FltWarningMessageConsole::clearMessages(); }
};

TEST_F(ConsoleTest, echoedMessageIsFollowedByItsLevelAndABlankLine)
{
    CaptureStream err(std::cerr);
    FltWarningMessageConsole::notifyMessage("WARNING ! something", 2, true);
    EXPECT_EQ(err.text(), "WARNING ! something\n(Warning Level: 2)\n\n");
    ASSERT_EQ(FltWarningMessageConsole::getMessages().size(), 1u);
    EXPECT_EQ(FltWarningMessageConsole::getMessages()[0].level, 2);
}

TEST_F(ConsoleTest, unshownMessageIsStoredAndListedLaterWithoutTheBlankLine)
{
    CaptureStream err(std::cerr);
    FltWarningMessageConsole::notifyMessage("x", 3, false);
    EXPECT_EQ(err.text(), "");
    FltWarningMessageConsole::showMessagesConsole(3);
    EXPECT_EQ(err.text(), "x\n(Warning Level: 3)\n");
}

TEST_F(ConsoleTest, listingSkipsMessagesBelowTheMinimumLevel)
{
    FltWarningMessageConsole::notifyMessage("low", 1, false);
    FltWarningMessageConsole::notifyMessage("high", 3, false);
    CaptureStream err(std::cerr);
    FltWarningMessageConsole::showMessagesConsole(4);
    EXPECT_EQ(err.text(), "");
    FltWarningMessageConsole::showMessagesConsole(2);
    EXPECT_EQ(err.text(), "high\n(Warning Level: 3)\n");
}

TEST_F(ConsoleTest, storedTextIsACopyOfTheCallersBuffer)
{
    char buffer[16] = "temporary";
    FltWarningMessageConsole::notifyMessage(buffer, 3, false);
    buffer[0] = 'X';
    EXPECT_STREQ(FltWarningMessageConsole::getMessages()[0].getMessage(), "temporary");
}

TEST_F(ConsoleTest, warningLevelIsStoredButFiltersNothing)
{
    FltWarningMessageConsole::setDefaultWarningLevel();
    EXPECT_EQ(FltWarningMessageConsole::currentWarningLevel, 2);
    FltWarningMessageConsole::setWarningLevel(3);
    EXPECT_EQ(FltWarningMessageConsole::currentWarningLevel, 3);
    CaptureStream err(std::cerr);
    FltWarningMessageConsole::notifyMessage("level one", 1, true);
    EXPECT_EQ(err.text(), "level one\n(Warning Level: 1)\n\n");
    EXPECT_EQ(FltWarningMessageConsole::getInstance(), FltWarningMessageConsole::getInstance());
    FltWarningMessageConsole::setWarningLevel(0);
}

TEST_F(ConsoleTest, repeatsWithinAConversionAreCappedAndSummedUpAtItsEnd)
{
    CaptureStream err(std::cerr);
    FltWarningMessageConsole::beginConversion();
    FltWarningMessageConsole::beginConversion();  // a nested conversion shares the count
    for (int i = 0; i < FltWarningMessageConsole::kMaxRepeats + 5; ++i)
        FltWarningMessageConsole::notifyMessage("WARNING ! again", 3, false);
    FltWarningMessageConsole::notifyMessage("WARNING ! other", 2, false);
    FltWarningMessageConsole::endConversion();
    EXPECT_EQ(FltWarningMessageConsole::getMessages().size(), size_t(FltWarningMessageConsole::kMaxRepeats + 1));
    FltWarningMessageConsole::endConversion();
    const auto& all = FltWarningMessageConsole::getMessages();
    ASSERT_EQ(all.size(), size_t(FltWarningMessageConsole::kMaxRepeats + 2));
    EXPECT_EQ(all.back().message, "WARNING ! The message \"WARNING ! again\" came 5 more times and was not repeated");
    EXPECT_EQ(all.back().level, 3);
    // Outside a conversion nothing is capped.
    for (int i = 0; i < FltWarningMessageConsole::kMaxRepeats + 5; ++i)
        FltWarningMessageConsole::notifyMessage("WARNING ! again", 3, false);
    EXPECT_EQ(all.size(), size_t(2 * FltWarningMessageConsole::kMaxRepeats + 7));
    EXPECT_EQ(err.text(), "");
}
