// neighbour USER_NUMBER PATH TARGET [PATH TARGET]...
//
// Another user of the machine, who may change some folders that an installer works in. Becomes that
// user, prints a line once at work, and then, until its standard input ends, swaps each PATH
// between what is there, a link to TARGET, a hard link to it, a folder that anybody may change,
// and nothing; and puts links in place of the temporaries that appear beside it. Prints at the end
// how often it swapped.
//
// A few threads each take a path, swap it some hundred times as fast as the system goes, leave it
// as the last swap left it, and take another: so installers also get somewhere in between.

#include <array>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned threadCount = 3;

std::atomic<bool> ending = false;
std::atomic<std::uint64_t> swapCount = 0;

class Swapper {
  public:
    Swapper(std::string path, std::string target, unsigned thread, std::uint_fast32_t seed)
        : path_(std::move(path)), target_(std::move(target)), random_(seed) {
        const std::size_t separator = path_.rfind('/');
        folder_ = path_.substr(0, separator);
        const std::string spare =
            folder_ + "/.neighbour-" + std::to_string(thread) + "-" + path_.substr(separator + 1);
        link_ = spare + "-link";
        openFolder_ = spare + "-folder";
        trash_ = spare + "-trash";
    }

    void burst() {
        for (auto turn = random_() % 400; turn > 0 && !ending; --turn) swapOnce();
        if (random_() % 4 == 0) swapTemporaries();
    }

  private:
    void swapOnce() {
        switch (random_() % 16) {
            case 0:
                putAside();
                break;
            case 1:
                // Refused where the system protects its files from such links.
                count(::link(target_.c_str(), path_.c_str()) == 0);
                break;
            case 2:
            case 3:
                ::mkdir(openFolder_.c_str(), 0777);
                ::chmod(openFolder_.c_str(), 0777);
                exchangeOrMove(openFolder_);
                break;
            default:
                static_cast<void>(!::symlink(target_.c_str(), link_.c_str()));
                exchangeOrMove(link_);
                break;
        }
    }

    void exchangeOrMove(const std::string& spare) {
        if (::renameat2(AT_FDCWD, spare.c_str(), AT_FDCWD, path_.c_str(), RENAME_EXCHANGE) == 0) {
            // Back again at once: a name that was looked at is another one when it is used.
            ::renameat2(AT_FDCWD, spare.c_str(), AT_FDCWD, path_.c_str(), RENAME_EXCHANGE);
            ::renameat2(AT_FDCWD, spare.c_str(), AT_FDCWD, path_.c_str(), RENAME_EXCHANGE);
            count(true);
        } else {
            count(::rename(spare.c_str(), path_.c_str()) == 0);
        }
    }

    void putAside() {
        if (::rename(path_.c_str(), trash_.c_str()) != 0) {
            // What cannot be removed makes room all the same.
            const std::string another = trash_ + std::to_string(random_());
            count(::rename(path_.c_str(), another.c_str()) == 0);
        }
        if (::unlink(trash_.c_str()) != 0) ::rmdir(trash_.c_str());
    }

    void swapTemporaries() {
        DIR* folder = ::opendir(folder_.c_str());
        if (folder == nullptr) return;
        while (const dirent* entry = ::readdir(folder)) {
            if (std::strncmp(entry->d_name, ".installing-", 12) != 0) continue;
            static_cast<void>(!::symlink(target_.c_str(), link_.c_str()));
            const std::string temporary = folder_ + "/" + entry->d_name;
            count(::renameat2(AT_FDCWD, link_.c_str(), AT_FDCWD, temporary.c_str(),
                              RENAME_EXCHANGE) == 0);
        }
        ::closedir(folder);
    }

    static void count(bool swapped) {
        if (swapped) swapCount.fetch_add(1, std::memory_order_relaxed);
    }

    std::string path_;
    std::string target_;
    std::string folder_;
    std::string link_;
    std::string openFolder_;
    std::string trash_;
    std::minstd_rand random_;
};

bool become(std::string_view number) {
    uid_t user = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), user);
    return error == std::errc() && user != 0 && ::setgroups(0, nullptr) == 0 &&
           ::setresgid(user, user, user) == 0 && ::setresuid(user, user, user) == 0;
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 4 || count % 2 != 0 || !become(arguments[1])) return 2;
    ::umask(0);
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([arguments, count, thread] {
            std::minstd_rand random(thread + 1);
            std::vector<Swapper> swappers;
            for (int index = 2; index + 1 < count; index += 2) {
                swappers.emplace_back(arguments[index], arguments[index + 1], thread, random());
            }
            while (!ending) swappers[random() % swappers.size()].burst();
        });
    }
    std::puts("at work");
    std::fflush(stdout);
    std::array<char, 64> ignored{};
    while (::read(STDIN_FILENO, ignored.data(), ignored.size()) > 0) {
    }
    ending = true;
    for (std::thread& thread : threads) thread.join();
    std::printf("%llu\n", static_cast<unsigned long long>(swapCount.load()));
    return 0;
}
