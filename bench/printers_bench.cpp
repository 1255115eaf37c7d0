// How the commands on many printers grow with their number: each is a process of its own over a store on disk.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <subsystem/hostplatform.h>
#include <subsystem/productfiles.h>
#include "benchmarks.h"

namespace {

// A folder with a list of so many printers of all products by turns; gone with the object.
class ManyPrinters {
public:
    explicit ManyPrinters(std::int64_t count) : folder_(MakeTemporaryFolder("mvpthost-bench-")) {
        const std::vector<std::filesystem::path> products = FindKnownProducts().files;
        std::ofstream list(folder_ / "list.csv");
        list << "name,product\n";
        for (std::int64_t number = 0; number < count; ++number)
            list << "Printer " << number << ','
                 << PathToUtf8(products[static_cast<std::size_t>(number) % products.size()].stem()) << '\n';
    }
    ~ManyPrinters() {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
    }
    ManyPrinters(const ManyPrinters&) = delete;
    ManyPrinters& operator=(const ManyPrinters&) = delete;

    // Runs mvpthost in the folder; the seconds that it took are added to the counter of that name.
    void Run(benchmark::State& state, const char* counter, const std::string& arguments) const {
        const std::string command = "cd '" + PathToUtf8(folder_) + "' && '" +
                                    PathToUtf8(GetProgramFolder() / "mvpthost") + "' --store store " + arguments +
                                    " >/dev/null";
        const auto start = std::chrono::steady_clock::now();
        if (std::system(command.c_str()) != 0) state.SkipWithError(counter);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        state.counters[counter] = elapsed.count();
    }

private:
    std::filesystem::path folder_;
};

void RunCommands(benchmark::State& state) {
    const ManyPrinters printers(state.range(0));
    for (auto _ : state) {
        printers.Run(state, "1_add", "printer add --from list.csv");
        printers.Run(state, "2_one_more", "printer add One --product press8434");
        printers.Run(state, "3_form", "printer form add Ticket --width 80 --length 200 --printer One");
        printers.Run(state, "4_tickets", "ticket --all-printers -o tickets");
        printers.Run(state, "5_capabilities", "capabilities --all-printers -o capabilities");
        printers.Run(state, "6_export", "registry export store.reg");
        printers.Run(state, "7_remove", "printer remove --all");
        printers.Run(state, "8_import", "registry import store.reg");
    }
}

}  // namespace

void RegisterPrinterBenchmarks() {
    benchmark::RegisterBenchmark("printers", RunCommands)
        ->Arg(100)
        ->Arg(1000)
        ->Arg(10000)
        ->Iterations(1)
        ->Unit(benchmark::kSecond);
}
