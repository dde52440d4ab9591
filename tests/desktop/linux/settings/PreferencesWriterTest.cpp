#include "desktop/linux/settings/PreferencesWriter.h"

#include "tests/fakes/RecordingLog.h"

#include <QCoreApplication>
#include <QStringList>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::preferences_writer_test {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// "a=1 b=", in the order of the keys; a removed key has no value.
std::string textOf(const PreferenceChanges& changes) {
    QStringList words;
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        words.append(change.key() + "=" + change->toString());
    }
    return words.join(' ').toStdString();
}

/// A file whose writing the test directs. Every attempt waits until it is answered.
class DirectedFile {
  public:
    WriteReport write(const PreferenceChanges& changes) {
        std::unique_lock lock(mutex_);
        attempts_.push_back(textOf(changes));
        changed_.notify_all();
        changed_.wait(lock, [this] { return !answers_.empty(); });
        WriteReport answer = std::move(answers_.front());
        answers_.pop_front();
        return answer;
    }

    void answer(WriteReport report) {
        const std::lock_guard lock(mutex_);
        answers_.push_back(std::move(report));
        changed_.notify_all();
    }

    /// Waits for that many attempts and returns all there were.
    std::vector<std::string> attempts(std::size_t count) {
        std::unique_lock lock(mutex_);
        EXPECT_TRUE(changed_.wait_for(lock, 10s, [&] { return attempts_.size() >= count; }));
        return attempts_;
    }

    /// To check that nothing is written.
    bool isWrittenWithin(std::chrono::milliseconds duration) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, duration, [this] { return !attempts_.empty(); });
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<WriteReport> answers_;
    std::vector<std::string> attempts_;
};

const WriteReport written{true, {}};
const WriteReport diskIsFull{false, "disk full"};

class PreferencesWriterTest : public testing::Test {
  protected:
    std::unique_ptr<PreferencesWriter> make(std::vector<std::chrono::milliseconds> retries = {1ms}) {
        return std::make_unique<PreferencesWriter>(
            [file = file_](const PreferenceChanges& changes) { return file->write(changes); },
            WriterPatience{.retries = std::move(retries), .atEnd = 10s}, recording_.log);
    }

    /// Ends this turn of the event loop and waits for that many attempts. Returns all there were.
    std::vector<std::string> attempts(std::size_t count) {
        QCoreApplication::sendPostedEvents();
        return file_->attempts(count);
    }

    std::shared_ptr<DirectedFile> file_ = std::make_shared<DirectedFile>();
    fakes::RecordingLog recording_{"preferences=info"};
};

TEST_F(PreferencesWriterTest, WritesAChangeAtTheEndOfTheTurn) {
    const auto writer = make();
    writer->add("a", 1);
    EXPECT_THAT(attempts(1), ElementsAre("a=1"));
    file_->answer(written);
    EXPECT_TRUE(writer->flush(10s));
}

TEST_F(PreferencesWriterTest, WritesTheChangesOfOneTurnOfTheEventLoopTogether) {
    const auto writer = make();
    writer->add("a", 1);
    EXPECT_FALSE(file_->isWrittenWithin(100ms));
    writer->add("b", 1);
    writer->add("a", 2);
    EXPECT_THAT(attempts(1), ElementsAre("a=2 b=1"));
    file_->answer(written);
    EXPECT_TRUE(writer->flush(10s));
    EXPECT_EQ(attempts(1).size(), 1U);
}

TEST_F(PreferencesWriterTest, FlushingDoesNotWaitForTheEventLoop) {
    const auto writer = make();
    writer->add("a", 1);
    file_->answer(written);
    EXPECT_TRUE(writer->flush(10s));
    EXPECT_THAT(attempts(1), ElementsAre("a=1"));
}

TEST_F(PreferencesWriterTest, WritesTogetherWhatChangesWhileItWrites) {
    const auto writer = make();
    writer->add("a", 1);
    attempts(1);
    writer->add("b", 1);
    writer->add("a", 2);
    writer->add("b", {});
    file_->answer(written);
    file_->answer(written);
    EXPECT_TRUE(writer->flush(10s));
    EXPECT_THAT(attempts(2), ElementsAre("a=1", "a=2 b="));
}

TEST_F(PreferencesWriterTest, WritesAgainAfterItWasIdle) {
    const auto writer = make();
    for (const int value : {1, 2, 3}) {
        writer->add("a", value);
        file_->answer(written);
        EXPECT_TRUE(writer->flush(10s));
    }
    EXPECT_THAT(attempts(3), ElementsAre("a=1", "a=2", "a=3"));
}

TEST_F(PreferencesWriterTest, TriesAgainWithTheNewestValues) {
    const auto writer = make();
    writer->add("a", 1);
    writer->add("b", 1);
    attempts(1);
    writer->add("a", 2);
    file_->answer(diskIsFull);
    file_->answer(written);
    EXPECT_EQ(attempts(2).back(), "a=2 b=1");
    EXPECT_TRUE(writer->flush(10s));
}

TEST_F(PreferencesWriterTest, RepeatsTheLastPause) {
    const auto writer = make({1ms, 2ms});
    writer->add("a", 1);
    for (int failure = 0; failure < 4; ++failure) file_->answer(diskIsFull);
    attempts(5);
    file_->answer(written);
    EXPECT_TRUE(writer->flush(10s));
}

TEST_F(PreferencesWriterTest, FlushingEndsThePause) {
    const auto writer = make({1h});
    writer->add("a", 1);
    file_->answer(diskIsFull);
    attempts(1);
    file_->answer(written);
    EXPECT_TRUE(writer->flush(10s) || writer->flush(10s)); // the first attempt may not have failed yet
    EXPECT_THAT(attempts(2), ElementsAre("a=1", "a=1"));
}

TEST_F(PreferencesWriterTest, FlushingGivesUpAfterAFailure) {
    const auto writer = make({1h});
    writer->add("a", 1);
    file_->answer(diskIsFull);
    file_->answer(diskIsFull);
    EXPECT_FALSE(writer->flush(10s));
    EXPECT_FALSE(writer->flush(10s));
    file_->answer(written);
    writer->add("b", 1);
    EXPECT_TRUE(writer->flush(10s));
    EXPECT_EQ(attempts(3).back(), "a=1 b=1");
}

TEST_F(PreferencesWriterTest, FlushingWithoutChangesWritesNothing) {
    const auto writer = make();
    EXPECT_TRUE(writer->flush(10s));
    EXPECT_THAT(attempts(0), IsEmpty());
}

TEST_F(PreferencesWriterTest, LogsAFailureOnceAndItsEnd) {
    const auto writer = make();
    writer->add("a", 1);
    file_->answer(diskIsFull);
    file_->answer(diskIsFull);
    file_->answer({false, "no folder"});
    file_->answer({true, "kept aside"});
    attempts(4);
    EXPECT_TRUE(writer->flush(10s));
    EXPECT_THAT(recording_.lines(),
                ElementsAre("kelvinbar: disk full", "kelvinbar: no folder",
                            "kelvinbar: preferences info: the preferences are saved again",
                            "kelvinbar: preferences info: kept aside"));
}

TEST_F(PreferencesWriterTest, WritesWhatIsPendingBeforeItsEnd) {
    auto writer = make();
    writer->add("a", 1);
    file_->answer(written);
    writer = nullptr;
    EXPECT_THAT(attempts(1), ElementsAre("a=1"));
    EXPECT_THAT(recording_.lines(), IsEmpty());
}

TEST_F(PreferencesWriterTest, LogsChangesThatAreLostAtItsEnd) {
    auto writer = make({1h});
    writer->add("a", 1);
    file_->answer(diskIsFull);
    file_->answer(diskIsFull);
    writer = nullptr;
    EXPECT_THAT(recording_.lines(), ElementsAre("kelvinbar: disk full",
                                                "kelvinbar: the last changes of the preferences are lost"));
}

TEST_F(PreferencesWriterTest, DoesNotWaitForAWriteThatDoesNotReturn) {
    std::promise<void> end;
    {
        // What is destroyed with the function is destroyed when its thread has ended.
        const auto whenDestroyed = std::shared_ptr<void>(nullptr, [&](void*) { end.set_value(); });
        PreferencesWriter writer(
            [file = file_, whenDestroyed](const PreferenceChanges& changes) { return file->write(changes); },
            {.retries = {1h}, .atEnd = 1ms}, recording_.log);
        writer.add("a", 1);
        attempts(1);
    }
    EXPECT_THAT(recording_.lines(), ElementsAre("kelvinbar: the last changes of the preferences are lost"));
    file_->answer(diskIsFull);
    end.get_future().wait();
    EXPECT_EQ(recording_.lines().size(), 1U);
}

} // namespace
} // namespace kelvinbar::preferences_writer_test
