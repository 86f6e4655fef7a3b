#include "bench/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "bench/measure.h"
#include "bench/workspace.h"

extern char** environ;  // NOLINT: posix_spawn's own

namespace bench {

void Usage::keepBest(const Usage& other) {
    cpu = std::min(cpu, other.cpu);
    user = std::min(user, other.user);
    wall = std::min(wall, other.wall);
}

Usage runProgram(std::string program, std::vector<std::string> arguments) {
    std::vector<char*> words = {program.data()};
    for (std::string& word : arguments) words.push_back(word.data());
    words.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, (folder() / "output").c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const double start = now().wall;
    pid_t child = 0;
    const int failed = posix_spawn(&child, words[0], &files, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    require(failed == 0, "the program starts");
    int status = 0;
    rusage used{};
    require(::wait4(child, &status, 0, &used) == child && status == 0, "the program succeeds");
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    const double user = seconds(used.ru_utime);
    return {user + seconds(used.ru_stime), user, now().wall - start};
}

const char* otherBuild() { return std::getenv("INTAKE_BENCH_AGAINST"); }

void measureAgainst(benchmark::State& state, const std::vector<std::string>& arguments,
                    const std::function<void()>& between) {
    Usage ours;
    Usage theirs;
    for (auto _ : state) {
        between();
        theirs.keepBest(runProgram(otherBuild(), arguments));
        between();
        const Usage usage = runProgram(INTAKE_PROGRAM_PATH, arguments);
        ours.keepBest(usage);
        state.SetIterationTime(usage.cpu);
    }
    state.counters["before_s"] = theirs.cpu;
    state.counters["intake_s"] = ours.cpu;
    state.counters["of_before"] = ours.cpu / theirs.cpu;
    state.counters["of_before_user"] = ours.user / theirs.user;
}

}  // namespace bench
