#include "simulator/journal.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace simulator {
namespace {

struct Journal {
    std::mutex mutex;
    std::condition_variable news;
    std::deque<Event> events;
    std::size_t recorded = 0;
    std::function<void(const Event&)> subscriber;
};

// Never destroyed: a thread may still record while the process ends.
Journal& TheJournal() {
    static Journal& journal = *new Journal;
    return journal;
}

}  // namespace

void Record(Event event) {
    Journal& journal = TheJournal();
    const std::lock_guard guard(journal.mutex);
    if (journal.events.size() == kLongestJournal) journal.events.pop_front();
    journal.events.push_back(std::move(event));
    ++journal.recorded;
    if (journal.subscriber) journal.subscriber(journal.events.back());
    journal.news.notify_all();
}

std::vector<Event> Events() {
    const std::lock_guard guard(TheJournal().mutex);
    return {TheJournal().events.begin(), TheJournal().events.end()};
}

void ForgetEvents() {
    const std::lock_guard guard(TheJournal().mutex);
    TheJournal().events.clear();
}

void SubscribeEvents(std::function<void(const Event&)> subscriber) {
    const std::lock_guard guard(TheJournal().mutex);
    TheJournal().subscriber = std::move(subscriber);
}

void AwaitEvent(std::chrono::milliseconds limit) {
    Journal& journal = TheJournal();
    std::unique_lock lock(journal.mutex);
    const std::size_t seen = journal.recorded;
    journal.news.wait_for(lock, limit, [&] { return journal.recorded != seen; });
}

}  // namespace simulator
