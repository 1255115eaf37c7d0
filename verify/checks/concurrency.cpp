// Several providers at once: on several threads, and of two printers of two products, each as if it were alone.
#include <subsystem/xmlfile.h>

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>

#include <verify/binding.h>
#include <verify/check.h>
#include <verify/testbench.h>

namespace {

constexpr unsigned kThreads = 4;

// What a printer's provider makes of a job: its ticket, the DEVMODE back from it, the capabilities.
class Job {
public:
    Job(const TestBench& bench, const CXString& printer, SHORT copies)
        : bench_(bench), session_(bench.OpenSession(printer)), copies_(std::to_string(copies)) {}

    std::string Run() const {
        DevmodeBuffer devmode = bench_.MakeDevmode(*session_, {{{"dmCopies", copies_}}, {}});
        const auto ticket = session_->MakeTicket(devmode);
        DevmodeBuffer back = bench_.MakeDevmode(*session_);
        session_->ApplyTicket(ticket.Get(), back);
        return FormatDocument(ticket.Get()) + std::string(back.GetBytesView()) +
               FormatDocument(session_->MakeCapabilities(ticket.Get()).Get());
    }

private:
    const TestBench& bench_;
    std::unique_ptr<PrintSession> session_;
    std::string copies_;
};

// Runs the action on each thread with the thread's number, and throws what one of them threw.
template <class Action>
void OnThreads(unsigned count, Action action) {
    std::exception_ptr failure;
    std::mutex mutex;
    std::vector<std::thread> threads;
    for (unsigned number = 0; number < count; ++number)
        threads.emplace_back([&, number] {
            try {
                action(number);
            } catch (...) {
                const std::lock_guard lock(mutex);
                failure = std::current_exception();
            }
        });
    for (std::thread& thread : threads) thread.join();
    if (failure) std::rethrow_exception(failure);
}

void RequireSame(const TestBench& bench, const std::string& got, const std::string& alone, const char* beside) {
    bench.Require(got == alone,
                  std::string("a job comes to another ticket, DEVMODE or capabilities ") + beside + " than alone");
}

void GivesTheSameOnThreads(TestBench& bench) {
    const std::size_t rounds = bench.Choose(40, 3000);
    std::vector<std::unique_ptr<Job>> jobs;
    std::vector<std::string> alone;
    for (unsigned number = 0; number < kThreads; ++number) {
        bench.Step("a job alone");
        jobs.push_back(std::make_unique<Job>(bench, bench.GetPrinterName(), static_cast<SHORT>(number + 1)));
        alone.push_back(jobs.back()->Run());
    }
    // One thread notes the steps: the note has one place.
    OnThreads(kThreads, [&](unsigned number) {
        for (std::size_t round = 0; round < rounds; ++round) {
            if (number == 0)
                bench.Step("jobs on " + std::to_string(kThreads) + " threads, round " + std::to_string(round));
            RequireSame(bench, jobs[number]->Run(), alone[number], "beside others on several threads");
        }
    });
}

void BindsOnThreads(TestBench& bench) {
    const std::size_t rounds = bench.Choose(15, 500);
    bench.Step("a job alone");
    const std::string alone = Job(bench, bench.GetPrinterName(), 2).Run();
    OnThreads(kThreads, [&](unsigned number) {
        for (std::size_t round = 0; round < rounds; ++round) {
            if (number == 0) bench.Step("providers made on several threads, round " + std::to_string(round));
            RequireSame(bench, Job(bench, bench.GetPrinterName(), 2).Run(), alone, "where others are made and end");
        }
    });
}

void KeepsPrintersApart(TestBench& bench) {
    if (bench.GetOtherPrinterName().IsEmpty()) throw CheckNotApplicable("there is no printer of another product");
    const std::size_t rounds = bench.Choose(30, 2000);
    bench.Step("two printers, one after the other");
    const Job first(bench, bench.GetPrinterName(), 3), second(bench, bench.GetOtherPrinterName(), 5);
    const std::string alone[] = {Job(bench, bench.GetPrinterName(), 3).Run(),
                                 Job(bench, bench.GetOtherPrinterName(), 5).Run()};
    for (std::size_t round = 0; round < rounds; ++round) {
        bench.Step("two printers in turn, round " + std::to_string(round));
        RequireSame(bench, first.Run(), alone[0], "in turn with another printer's");
        RequireSame(bench, second.Run(), alone[1], "in turn with another printer's");
    }
    OnThreads(2, [&](unsigned number) {
        for (std::size_t round = 0; round < rounds; ++round) {
            if (number == 0) bench.Step("two printers on two threads, round " + std::to_string(round));
            RequireSame(bench, (number == 0 ? first : second).Run(), alone[number], "beside another printer's");
        }
    });
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Concurrency, "several-threads", "providers on several threads give the same bytes as one alone",
      GivesTheSameOnThreads}},
    {{CheckGroup::Concurrency, "binding-on-threads", "providers are made, bound, used and released on several threads",
      BindsOnThreads}},
    {{CheckGroup::Concurrency, "two-printers", "printers of two products, in turn and on two threads, stay apart",
      KeepsPrintersApart}},
};

}  // namespace
