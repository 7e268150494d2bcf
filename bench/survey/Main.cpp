// tavrel-bench-survey [files] [tables]: makes databases, every tenth of which differs from the reference, and
// runs the command line program on them.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "jet/database/Database.h"

namespace {

using namespace tavrel;
namespace fs = std::filesystem;

struct Cost {
    double seconds = 0;
    double processor = 0;  ///< seconds of it at work, on all cores
    long kilobytes = 0;    ///< the most at one time
};

double SecondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Runs the program with its output thrown away.
Cost Run(const std::vector<std::string>& arguments) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char*> words = {const_cast<char*>(TAVREL_CLI)};
        for (const std::string& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        execv(TAVREL_CLI, words.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) {
        std::fprintf(stderr, "the program has failed\n");
        std::exit(1);
    }
    return {std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
            SecondsOf(usage.ru_utime) + SecondsOf(usage.ru_stime), usage.ru_maxrss};
}

void MakeDatabase(const fs::path& path, int tables, bool differs) {
    constexpr int kColumns = 20;
    const auto database = jet::Database::Create(path.string());
    for (int t = 0; t < tables; ++t) {
        jet::NewTable table;
        table.name = "table_" + std::to_string(t);
        for (int c = 0; c < kColumns; ++c) {
            jet::NewColumn column;
            column.name = "column_" + std::to_string(c);
            column.type = c % 2 == 0 ? jet::ColumnType::Long : jet::ColumnType::Text;
            column.size = c % 2 == 0 ? 0 : differs && t == 0 ? 60 : 50;
            column.defaultValue = c % 3 == 0 ? "0" : "";
            table.columns.push_back(std::move(column));
        }
        jet::NewIndex key;
        key.name = "PrimaryKey";
        key.primary = true;
        key.fields = {{"column_0", false}};
        table.indexes.push_back(std::move(key));
        database->CreateTable(table);
    }
    database->Flush();
}

void Print(const char* what, const Cost& cost) {
    std::printf("%-28s %8.2f s %8.2f s at work %8ld KB\n", what, cost.seconds, cost.processor,
                cost.kilobytes);
}

}  // namespace

int main(int count, char** arguments) {
    const int files = count > 1 ? std::atoi(arguments[1]) : 500;
    const int tables = count > 2 ? std::atoi(arguments[2]) : 50;
    const fs::path folder = fs::temp_directory_path() / ("tavrel-bench-survey-" + std::to_string(getpid()));
    const fs::path few = folder / "few";
    const fs::path many = folder / "many";
    fs::create_directories(few);
    fs::create_directories(many);
    const std::string reference = folder / "reference.mdb";
    const fs::path other = folder / "other.mdb";
    MakeDatabase(reference, tables, false);
    MakeDatabase(other, tables, true);
    for (int i = 0; i < files; ++i) {
        const std::string name = "file_" + std::to_string(i) + ".mdb";
        fs::copy_file(i % 10 == 9 ? other : fs::path(reference), many / name);
        if (i < files / 10) {
            fs::copy_file(reference, few / name);
        }
    }
    Print("a tenth of the files, one run", Run({"compare", reference, few.string()}));
    Print("all files, one run", Run({"compare", reference, many.string()}));
    Cost single;
    for (const auto& entry : fs::directory_iterator(many)) {
        const Cost cost = Run({"compare", reference, entry.path().string()});
        single.seconds += cost.seconds;
        single.processor += cost.processor;
        single.kilobytes = std::max(single.kilobytes, cost.kilobytes);
    }
    Print("all files, single runs", single);
    fs::remove_all(folder);
    return 0;
}
