// Work on many printers at once: what is done, what is not and why, and one line of it at the end.
#pragma once

#include <printerlist.h>
#include <widetext.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "commands/commands.h"

struct BulkItem {
    WideString name;
    std::size_t line = 0;  // of the file that lists it; 0 for none
    std::string fault;     // why it is not done; empty when it is
};

std::vector<BulkItem> MakeBulkItems(const std::vector<PrinterRow>& printers);

// What the items are, and what becomes of them: "498 of 500 printers added".
struct BulkWords {
    const char *done, *one = "printer", *many = "printers";
};

// Progress goes to standard error, when that is a terminal; so does each item's fault, in any case.
class BulkReport {
public:
    // Faults that the items have are reported at once.
    BulkReport(HostContext& context, std::vector<BulkItem>& items, const BulkWords& words);

    // From any thread, each item by one.
    void Succeed();
    void Fail(BulkItem& item, const std::string& fault);
    void Report(const BulkItem& item, const std::string& note);
    // The item has gone meanwhile: it counts no more.
    void Forget();

    // Prints the line, "498 of 500 printers added; 2 not (lines 17, 230)", and sets the exit status.
    void Finish();

private:
    void Print(const BulkItem& item, const std::string& text);
    void ShowProgress();
    void ClearProgress();
    std::string Count(std::size_t count) const;
    std::string ListFaults() const;

    HostContext& context_;
    std::vector<BulkItem>& items_;
    const BulkWords words_;
    bool showsProgress_;
    std::mutex mutex_;
    std::size_t handled_ = 0, forgotten_ = 0;
};

// Changes of the store, a hundred items to a transaction.
struct BulkChange {
    const char* done;                              // as for the report
    std::function<void()> begin;                   // of each transaction
    std::function<bool(std::size_t index)> apply;  // one item; throws why it cannot be; false when the printer has gone
    std::function<void()> end;                     // of each transaction, before it is committed
    std::function<bool(const BulkItem& item)> isDone;  // as the store has it, when a transaction was not committed
    std::function<void(const BulkItem& item)> undo;    // under --atomic, where there are no transactions
};
void ChangeInBulk(HostContext& context, std::vector<BulkItem>& items, const BulkChange& change, bool atomic = false);

using BulkNotes = std::vector<std::string>;

// Work on each item, on all cores.
struct BulkWork {
    BulkWords words;
    std::function<void(const BulkItem& item, BulkNotes& notes)> apply;  // throws why it cannot be; notes are reported
    std::function<bool(const BulkItem& item)> isThere = {};  // whether one that failed still counts; all do without it
};
// The items that a user's interruption leaves undone have it as their fault.
void WorkInBulk(HostContext& context, std::vector<BulkItem>& items, const BulkWork& work);
