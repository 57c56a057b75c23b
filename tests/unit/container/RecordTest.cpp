#include "container/Record.h"

#include "support/RecordCapture.h"
#include "support/Threads.h"

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <ostream>
#include <stdexcept>

namespace ostrel::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace logging = boost::log;
namespace messages = us_container::messages;

/// A piece that acts when it is inserted, and inserts "piece".
class Piece {
public:
    explicit Piece(std::function<void()> action) : m_action(std::move(action)) {}
    friend std::ostream& operator<<(std::ostream& stream, const Piece& piece)
    {
        piece.m_action();
        return stream << "piece";
    }

private:
    std::function<void()> m_action;
};

class Record : public ::testing::Test {
protected:
    /// A value that counts its evaluations.
    std::string counted()
    {
        ++evaluations;
        return "value";
    }

    int evaluations = 0;
    RecordCapture log;
};

struct Expected {
    std::function<void()> write;
    std::uint32_t severity;
    std::string text;
    friend std::ostream& operator<<(std::ostream& stream, const Expected& expected) { return stream << expected.text; }
};

class EachMessage : public Record, public ::testing::WithParamInterface<Expected> {};

TEST_P(EachMessage, GivenValues_WhenWritten_ThenSeverityAndTextAreThese)
{
    GetParam().write();

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{GetParam().severity, GetParam().text}));
}

INSTANTIATE_TEST_SUITE_P(
    All, EachMessage,
    ::testing::Values(
        Expected{[] { OSTREL_RECORD(messages::installFailed, "A"); }, 0x8, "Unable to install bundle: A"},
        Expected{[] { OSTREL_RECORD(messages::installFailedCause, "A", "B"); }, 0x200,
                 "Unable to install bundle: A, cause: B"},
        Expected{[] { OSTREL_RECORD(messages::installFailedUnknown, "A"); }, 0x200,
                 "Unable to install bundle: A, unknown error"},
        Expected{[] { OSTREL_RECORD(messages::invalidBundle, "A"); }, 0x10, "Invalid bundle: A"},
        Expected{[] { OSTREL_RECORD(messages::stopFailedCause, "A", "B"); }, 0x10, "Error while stoping A: B"},
        Expected{[] { OSTREL_RECORD(messages::stopFailedUnknown, "A"); }, 0x10, "Unknown error while stoping A"},
        Expected{[] { OSTREL_RECORD(messages::didNotStop, "A"); }, 0x10, "Did not stop A"}));

TEST_F(Record, GivenEmptyValues_WhenWritten_ThenTheLiteralsStandAlone)
{
    OSTREL_RECORD(messages::installFailedCause, std::string{}, "");

    EXPECT_THAT(log.messages(), ElementsAre("Unable to install bundle: , cause: "));
}

TEST_F(Record, GivenValuesWithLineEndsAndPercents_WhenWritten_ThenTheyAreKept)
{
    OSTREL_RECORD(messages::stopFailedCause, "a\nb", std::string{"100 %s %1%\n"});

    EXPECT_THAT(log.messages(), ElementsAre("Error while stoping a\nb: 100 %s %1%\n"));
}

TEST_F(Record, GivenTwoRecords_WhenWritten_ThenTheSecondHasNothingOfTheFirst)
{
    OSTREL_RECORD(messages::installFailed, "A");
    OSTREL_RECORD(messages::didNotStop, "B");

    EXPECT_THAT(log.records(),
                ElementsAre(LogRecord{0x8, "Unable to install bundle: A"}, LogRecord{0x10, "Did not stop B"}));
}

TEST_F(Record, GivenAllSeverities_WhenWritten_ThenTheValueIsEvaluatedOnce)
{
    OSTREL_RECORD(messages::didNotStop, counted());

    EXPECT_EQ(evaluations, 1);
}

TEST_F(Record, GivenMaskWithoutItsBit_WhenWritten_ThenTheValueIsNotEvaluated)
{
    us_container::diagnosticLog().setEnabledSeverities(~0x10U);

    OSTREL_RECORD(messages::didNotStop, counted());

    EXPECT_EQ(evaluations, 0);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Record, GivenMaskWithoutItsBit_WhenWritten_ThenTheCoreIsNotAsked)
{
    int asked = 0;
    logging::core::get()->set_filter([&](const logging::attribute_value_set&) { return ++asked > 0; });
    us_container::diagnosticLog().setEnabledSeverities(~0x10U);

    OSTREL_RECORD(messages::didNotStop, "A");

    EXPECT_EQ(asked, 0);
}

TEST_F(Record, GivenDisabledCore_WhenWritten_ThenTheValueIsNotEvaluated)
{
    logging::core::get()->set_logging_enabled(false);

    OSTREL_RECORD(messages::didNotStop, counted());

    EXPECT_EQ(evaluations, 0);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Record, GivenCoreFilterThatRejects_WhenWritten_ThenTheValueIsNotEvaluated)
{
    logging::core::get()->set_filter([](const logging::attribute_value_set&) { return false; });

    OSTREL_RECORD(messages::didNotStop, counted());

    EXPECT_EQ(evaluations, 0);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Record, GivenPieceThatThrows_WhenWritten_ThenTheExceptionGoesOn)
{
    const Piece piece{[] { throw std::runtime_error{"planned fault"}; }};

    EXPECT_THROW(OSTREL_RECORD(messages::didNotStop, piece), std::runtime_error);
}

TEST_F(Record, GivenPieceThatThrows_WhenWritten_ThenTheRecordIsNotPushed)
{
    const Piece piece{[] { throw std::runtime_error{"planned fault"}; }};

    EXPECT_ANY_THROW(OSTREL_RECORD(messages::didNotStop, piece));

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Record, GivenSecondPieceThatThrows_WhenWritten_ThenTheRecordIsNotPushed)
{
    const Piece piece{[] { throw 42; }};

    EXPECT_THROW(OSTREL_RECORD(messages::stopFailedCause, "A", piece), int);

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Record, GivenValueWhoseEvaluationThrows_WhenWritten_ThenTheRecordIsNotPushed)
{
    const auto value = []() -> std::string { throw std::runtime_error{"planned fault"}; };

    EXPECT_THROW(OSTREL_RECORD(messages::didNotStop, value()), std::runtime_error);

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Record, GivenInterruptedRecord_WhenTheNextIsWritten_ThenItHasNothingOfIt)
{
    const Piece piece{[] { throw std::runtime_error{"planned fault"}; }};
    EXPECT_ANY_THROW(OSTREL_RECORD(messages::stopFailedCause, "A", piece));

    OSTREL_RECORD(messages::didNotStop, "B");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Did not stop B"}));
}

TEST_F(Record, GivenExceptionThatIsUnderWay_WhenWritten_ThenTheRecordIsPushed)
{
    struct WritesAtTheEnd {
        ~WritesAtTheEnd() { OSTREL_RECORD(messages::didNotStop, "A"); }
    };

    try {
        const WritesAtTheEnd unwound;
        throw std::runtime_error{"planned fault"};
    } catch (const std::runtime_error&) {
    }

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Did not stop A"}));
}

TEST_F(Record, GivenPieceThatWritesARecord_WhenWritten_ThenBothArePushed)
{
    const Piece piece{[] { OSTREL_RECORD(messages::unloadFailed, "inner"); }};

    OSTREL_RECORD(messages::installFailed, piece);

    // Their texts alone: Boost.Log keeps the severity per thread, so the inner record leaves its own to the outer one.
    EXPECT_THAT(log.messages(), ElementsAre("Error while unloading service inner", "Unable to install bundle: piece"));
}

TEST_F(Record, GivenPieceThatIsBusy_WhenAnotherThreadWrites_ThenItNeedNotWait)
{
    bool otherFinished = false;
    const Piece piece{
        [&] { otherFinished = OtherThread{[] { OSTREL_RECORD(messages::didNotStop, "other"); }}.finishesWithin(); }};

    OSTREL_RECORD(messages::installFailed, piece);

    EXPECT_TRUE(otherFinished);
}

TEST_F(Record, GivenSinkThatIsBusy_WhenAnotherThreadWrites_ThenItNeedNotWait)
{
    bool otherFinished = false;
    log.onRecord([&](const LogRecord& record) {
        if (record.severity == 0x8) {
            otherFinished = OtherThread{[] { OSTREL_RECORD(messages::didNotStop, "other"); }}.finishesWithin();
        }
    });

    OSTREL_RECORD(messages::installFailed, "A");

    EXPECT_TRUE(otherFinished);
}

TEST_F(Record, GivenRecordThatIsOpened_WhenAnotherThreadWrites_ThenItWaits)
{
    Latch isKnown;
    Latch isOpening;
    // The first record of a thread makes the core wait for all others; here the source's own lock is in question.
    const OtherThread other{[&] {
        OSTREL_RECORD(messages::invalidBundle, "first");
        isKnown.open();
        isOpening.waitFor();
        OSTREL_RECORD(messages::didNotStop, "other");
    }};
    ASSERT_TRUE(isKnown.waitFor());
    std::atomic<int> inside = 0;
    std::atomic<bool> wereTogether = false;
    logging::core::get()->set_filter([&](const logging::attribute_value_set&) {
        if (++inside > 1) {
            wereTogether = true;
        } else if (!isOpening.waitFor(std::chrono::milliseconds::zero())) {
            isOpening.open();
            other.finishesWithin(glance);
        }
        --inside;
        return true;
    });

    OSTREL_RECORD(messages::installFailed, "A");

    ASSERT_TRUE(other.finishesWithin());
    EXPECT_FALSE(wereTogether);
}

TEST_F(Record, GivenFilterThatThrows_WhenWritten_ThenTheNextRecordIsNotBlocked)
{
    logging::core::get()->set_filter(
        [](const logging::attribute_value_set&) -> bool { throw std::runtime_error{"planned fault: filter"}; });
    EXPECT_THROW(OSTREL_RECORD(messages::installFailed, "A"), std::runtime_error);
    logging::core::get()->reset_filter();

    const bool finished = OtherThread{[] { OSTREL_RECORD(messages::didNotStop, "other"); }}.finishesWithin();

    EXPECT_TRUE(finished);
}

TEST_F(Record, GivenManyThreads_WhenEachWritesItsOwnMessage_ThenEachRecordHasItsSeverity)
{
    {
        const OtherThread first{[] {
            for (int i = 0; i < 1000; ++i) {
                OSTREL_RECORD(messages::installFailed, "A");
            }
        }};
        const OtherThread second{[] {
            for (int i = 0; i < 1000; ++i) {
                OSTREL_RECORD(messages::didNotStop, "B");
            }
        }};
    }

    EXPECT_THAT(log.records(), SizeIs(2000));
    EXPECT_THAT(log.records(), Each(::testing::AnyOf(LogRecord{0x8, "Unable to install bundle: A"},
                                                     LogRecord{0x10, "Did not stop B"})));
}

} // namespace
} // namespace ostrel::test
