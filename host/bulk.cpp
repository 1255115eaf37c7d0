// Work on many printers at once.
#include "bulk.h"

#include <mvutil/morvaneexception.h>
#include <store.h>

#include <algorithm>
#include <atomic>
#include <ostream>
#include <thread>

#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/interruption.h>
#include <subsystem/operationreports.h>

namespace {

constexpr std::size_t kItemsOfATransaction = 100;
constexpr std::size_t kItemsBetweenProgress = 20;
constexpr std::size_t kProgressWidth = 32;
constexpr std::size_t kMostRanges = 20;  // that the last line names

// Of the exception that is being handled.
std::string DescribeFailure() {
    try {
        throw;
    } catch (const MorvaneException& exception) {
        return "failed with " + DescribeException(exception);
    } catch (const std::bad_alloc&) {
        return "there is not enough memory";
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "failed for a reason that is not known";
    }
}

std::string Quoted(const BulkItem& item) { return "'" + ToUtf8(item.name) + "'"; }

}  // namespace

std::vector<BulkItem> MakeBulkItems(const std::vector<PrinterRow>& printers) {
    std::vector<BulkItem> items;
    items.reserve(printers.size());
    for (const PrinterRow& printer : printers) items.push_back({printer.name, 0, {}});
    return items;
}

BulkReport::BulkReport(HostContext& context, std::vector<BulkItem>& items, const BulkWords& words)
    : context_(context), items_(items), words_(words), showsProgress_(IsTerminal(context.err)) {
    for (BulkItem& item : items_)
        if (!item.fault.empty()) Fail(item, item.fault);
}

void BulkReport::ShowProgress() {
    if (showsProgress_ && (handled_ % kItemsBetweenProgress == 0 || handled_ == items_.size()))
        context_.err << '\r' << handled_ << " of " << items_.size() << std::flush;
}

void BulkReport::ClearProgress() {
    if (showsProgress_) context_.err << '\r' << std::string(kProgressWidth, ' ') << '\r';
}

void BulkReport::Succeed() {
    const std::lock_guard lock(mutex_);
    ++handled_;
    ShowProgress();
}

void BulkReport::Forget() {
    const std::lock_guard lock(mutex_);
    ++forgotten_;
}

void BulkReport::Fail(BulkItem& item, const std::string& fault) {
    const std::lock_guard lock(mutex_);
    ++handled_;
    item.fault = fault;
    Print(item, fault);
}

void BulkReport::Report(const BulkItem& item, const std::string& note) {
    const std::lock_guard lock(mutex_);
    Print(item, note);
}

void BulkReport::Print(const BulkItem& item, const std::string& text) {
    ClearProgress();
    context_.err << (item.line ? "line " + std::to_string(item.line) : Quoted(item)) << ": " << text << '\n';
    ShowProgress();
}

std::string BulkReport::Count(std::size_t count) const {
    return std::to_string(count) + ' ' + (count == 1 ? words_.one : words_.many);
}

// Lines as ranges of items that follow each other; names where there are no lines.
std::string BulkReport::ListFaults() const {
    std::string text;
    std::size_t ranges = 0, listed = 0, all = 0;
    for (std::size_t first = 0; first < items_.size(); ++first) {
        if (items_[first].fault.empty()) continue;
        std::size_t last = first;
        while (items_[first].line && last + 1 < items_.size() && !items_[last + 1].fault.empty()) ++last;
        all += last - first + 1;
        if (ranges++ < kMostRanges) {
            listed = all;
            text += ranges == 1 ? "" : ", ";
            text += items_[first].line ? std::to_string(items_[first].line) : Quoted(items_[first]);
            if (last != first) text += " to " + std::to_string(items_[last].line);
        }
        first = last;
    }
    const char* const lines = items_.empty() || items_.front().line == 0 ? "" : all == 1 ? "line " : "lines ";
    return lines + text + (all > listed ? " and " + std::to_string(all - listed) + " more" : "");
}

void BulkReport::Finish() {
    ClearProgress();
    const std::size_t total = items_.size() - forgotten_;
    const auto failed = static_cast<std::size_t>(
        std::count_if(items_.begin(), items_.end(), [](const BulkItem& item) { return !item.fault.empty(); }));
    if (failed == 0) {
        context_.out << Count(total) << ' ' << words_.done << '\n';
        return;
    }
    context_.out << total - failed << " of " << Count(total) << ' ' << words_.done << "; " << failed << " not ("
                 << ListFaults() << ")\n";
    context_.exitStatus = kExitFailed;
}

namespace {

// The items from first to last, in one transaction. False when it was not committed; whyNot states the reason then,
// unless single items do.
class BulkTransaction {
public:
    BulkTransaction(std::vector<BulkItem>& items, const BulkChange& change, BulkReport& report, bool atomic)
        : items_(items), change_(change), report_(report), atomic_(atomic) {}

    bool Run(std::size_t first, std::size_t last, std::string* whyNot) {
        const bool isCommitted = Commit(first, last, whyNot);
        if (!isCommitted && atomic_) Undo();
        return isCommitted;
    }

private:
    bool Commit(std::size_t first, std::size_t last, std::string* whyNot) {
        try {
            StoreTransaction transaction;
            change_.begin();
            bool all = true;
            for (std::size_t index = first; index < last; ++index) all = Apply(index) && all;
            if (atomic_ && !all) return false;
            if (change_.end) change_.end();
            transaction.Commit();
            return true;
        } catch (...) {
            *whyNot = DescribeFailure();
            return false;
        }
    }

    // Throws when the store can no longer be changed, with which the others fare no better.
    bool Apply(std::size_t index) {
        if (!items_[index].fault.empty()) return false;
        StoreTransaction own;
        try {
            const bool isThere = change_.apply(index);
            own.Commit();
            applied_.push_back(index);
            isThere ? report_.Succeed() : report_.Forget();
            return true;
        } catch (...) {
            report_.Fail(items_[index], DescribeFailure());
            return false;
        }
    }

    // Where there are no transactions. What cannot be taken back is there, and is reported so.
    void Undo() {
        for (const std::size_t index : applied_) {
            try {
                if (change_.undo && change_.isDone(items_[index])) change_.undo(items_[index]);
            } catch (...) {
                report_.Report(items_[index], "it is there nevertheless: " + DescribeFailure());
            }
        }
    }

    std::vector<BulkItem>& items_;
    const BulkChange& change_;
    BulkReport& report_;
    bool atomic_;
    std::vector<std::size_t> applied_;
};

}  // namespace

void ChangeInBulk(HostContext& context, std::vector<BulkItem>& items, const BulkChange& change, bool atomic) {
    BulkReport report(context, items, {.done = change.done});
    const auto isBad = [](const BulkItem& item) { return !item.fault.empty(); };
    const bool isTried = !(atomic && std::any_of(items.begin(), items.end(), isBad));
    bool goesOn = isTried;
    std::string whyNot;
    std::size_t first = 0;
    const std::size_t step = atomic ? items.size() : kItemsOfATransaction;
    while (goesOn && first < items.size()) {
        const std::size_t last = std::min(first + step, items.size());
        goesOn = BulkTransaction(items, change, report, atomic).Run(first, last, &whyNot);
        if (goesOn) first = last;
    }
    // What the store does not have for the sake of others, or of a transaction that failed, is named as well.
    if (!whyNot.empty()) context.err << "from here on nothing was done: " << whyNot << '\n';
    for (std::size_t index = first; index < items.size(); ++index)
        if (!isBad(items[index]) && !(isTried && change.isDone(items[index])))
            items[index].fault = "not done for the sake of others";
    report.Finish();
}

void WorkInBulk(HostContext& context, std::vector<BulkItem>& items, const BulkWork& work) {
    const InterruptionGuard untilNextItem;
    BulkReport report(context, items, work.words);
    std::atomic<std::size_t> next = 0;
    const auto run = [&] {
        for (std::size_t index; (index = next++) < items.size();) {
            BulkItem& item = items[index];
            if (!item.fault.empty()) continue;
            if (InterruptionGuard::IsRequested()) {
                item.fault = "not done: interrupted";
                continue;
            }
            BulkNotes notes;
            std::string fault;
            bool isThere = true;
            try {
                work.apply(item, notes);
            } catch (...) {
                fault = DescribeFailure();
                isThere = !work.isThere || work.isThere(item);
            }
            for (const std::string& note : notes) report.Report(item, note);
            if (!isThere) {
                report.Forget();
            } else {
                fault.empty() ? report.Succeed() : report.Fail(item, fault);
            }
        }
    };
    {
        std::vector<std::jthread> others(std::min<std::size_t>(std::thread::hardware_concurrency(), items.size()));
        if (!others.empty()) others.pop_back();  // this thread works as well
        for (std::jthread& other : others) other = std::jthread(run);
        run();
    }
    report.Finish();
    context.out.flush();  // an interrupted program ends with the guard
}
