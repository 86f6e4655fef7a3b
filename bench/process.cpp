#include "bench/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/measure.h"
#include "bench/workspace.h"

extern char** environ;  // NOLINT: posix_spawn's own

namespace bench {

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
    return {seconds(used.ru_utime) + seconds(used.ru_stime), now().wall - start};
}

}  // namespace bench
