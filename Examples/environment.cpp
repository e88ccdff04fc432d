// An environment with an event loop:
//
//     environment [--user NAME --password WORD] [--progress] [--patience SECONDS] DIRECTORY...
//
// Shows for each working copy what has changed here and at the server, and its history, page by
// page; then starts a history and cancels it. A server that takes longer than the patience lasts is
// given up. The loop never waits for a client: operations run on a queue, and what they tell comes
// to the loop as events.

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <iostream>
#include <mutex>
#include <quen/Host/Credentials/CredentialSource.h>
#include <quen/Host/Credentials/Credentials.h>
#include <quen/Host/Embedding/ErrorDescription.h>
#include <quen/Host/Embedding/InstalledModule.h>
#include <quen/Host/Embedding/OperationStart.h>
#include <quen/Host/Embedding/RequestBuilder.h>
#include <quen/Host/Embedding/WorkingCopy.h>
#include <quen/Host/PlugInLoader.h>
#include <quen/Host/RunContext.h>
#include <string>
#include <thread>
#include <vector>

using namespace quen;

namespace {

/// Stands for the loop of a window system: events from any thread, handled one after the other.
class EventLoop {
public:
    void post(std::function<void()> event) {
        const std::lock_guard lock(mutex_);
        events_.push_back(std::move(event));
        arrived_.notify_one();
    }
    /// Handles events until `stop`.
    void run() {
        while (!hasStopped_) {
            std::unique_lock lock(mutex_);
            arrived_.wait(lock, [this] { return !events_.empty(); });
            const auto event = std::move(events_.front());
            events_.pop_front();
            lock.unlock();
            event();
        }
    }
    void stop() { hasStopped_ = true; }

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<std::function<void()>> events_;
    bool hasStopped_ = false;
};

/// Answers a server's question with what the command line has, once.
class GivenPassword : public CredentialSource {
public:
    GivenPassword(std::string user, std::string password)
        : user_(std::move(user)), password_(std::move(password)) {}
    std::optional<CredentialAnswer> answer(const CredentialQuestion& question,
                                           std::stop_token /*stop*/) override {
        std::cout << "sign in: " << question.realm << '\n';
        if (user_.empty() || question.wasRefused || question.kind != CredentialKind::password) {
            return std::nullopt;
        }
        return CredentialAnswer{user_, Secret(password_), CredentialKeep::process};
    }

private:
    std::string user_;
    std::string password_;
};

/// Something that waits, off the loop.
class Work : public Operation {
public:
    explicit Work(std::function<void()> work) : work_(std::move(work)) {}
    void main() override { work_(); }

private:
    std::function<void()> work_;
};

/// What the command line says.
struct Settings {
    std::string user = {};
    std::string password = {};
    bool showsProgress = false;
    std::optional<std::chrono::seconds> patience = {};
    std::vector<std::string> directories = {};
};

Settings settingsIn(const std::vector<std::string>& words) {
    Settings settings;
    for (std::size_t at = 0; at < words.size(); ++at) {
        const bool hasNext = at + 1 < words.size();
        if (words[at] == "--progress") {
            settings.showsProgress = true;
        } else if (words[at] == "--user" && hasNext) {
            settings.user = words[++at];
        } else if (words[at] == "--password" && hasNext) {
            settings.password = words[++at];
        } else if (words[at] == "--patience" && hasNext) {
            settings.patience = std::chrono::seconds(std::stoi(words[++at]));
        } else {
            settings.directories.push_back(words[at]);
        }
    }
    return settings;
}

class Environment {
public:
    Environment(QuenSourceControlProtocolPtr provider, Settings settings)
        : provider_(std::move(provider)), settings_(std::move(settings)) {
        for (const std::string& directory : settings_.directories) {
            copies_.emplace_back(provider_, directory);
        }
    }

    void run() {
        open_ = copies_.size();
        const std::jthread patience([this](std::stop_token done) { giveUpInTime(done); });
        for (const WorkingCopy& copy : copies_) {
            showChanges(copy);
        }
        if (open_ > 0) {
            loop_.run();
        }
    }

private:
    /// Starts a request whose end is an event of the loop.
    void start(const QuenSourceControlRequestPtr& request, std::stop_token stop,
               std::function<void(QuenSourceControlOperationPtr)> ended) {
        Error refusal;
        auto held = std::make_shared<QuenSourceControlOperationPtr>();
        OperationListeners listeners;
        if (settings_.showsProgress) {
            listeners.progress = [this](std::size_t bytes) {
                loop_.post([bytes] { std::cout << "  " << bytes << " bytes so far\n"; });
            };
        }
        listeners.stop = std::move(stop);
        listeners.completion = [this, held, ended](QuenSourceControlOperation&) {
            loop_.post([held, ended] { ended(std::move(*held)); });
        };
        *held = startOperation(provider_, request, *queue_, std::move(listeners), &refusal);
        if (*held == nullptr) {
            fail(refusal, request->type());
            finish();
        }
    }

    void showChanges(const WorkingCopy& copy) {
        start(makeRequest<RequestTypeRemoteStatus>()
                  .tree(copy.tree(), copy.repository())
                  .files({copy.directory()})
                  .request(),
              patience_.get_token(), [this, &copy](const QuenSourceControlOperationPtr& operation) {
                  std::cout << "changes in " << copy.directory() << '\n';
                  auto items = statusItems(operation->result());
                  // A server is asked in no particular order.
                  std::ranges::sort(items, {}, &StatusItem::path);
                  for (const StatusItem& item : items) {
                      if (item.isChanged() || item.isUnversioned() || !item.repository.isNone()) {
                          std::cout << "  " << describe(item) << item.path << '\n';
                      }
                  }
                  fail(operation->error(), RequestTypeRemoteStatus);
                  operation->isCancelled() ? finish() : showHistory(copy);
              });
    }

    /// Where a server does not answer.
    void giveUpInTime(std::stop_token done) {
        std::mutex mutex;
        std::unique_lock lock(mutex);
        std::condition_variable_any never;
        if (settings_.patience) {
            never.wait_for(lock, done, *settings_.patience, [] { return false; });
            patience_.request_stop();
        }
    }

    static const char* describe(const StatusItem& item) {
        return item.isConflicted()    ? "conflict "
               : item.isUnversioned() ? "new "
               : item.isChanged()     ? "changed "
                                      : "newer there ";
    }

    /// A page at a time; a person would ask for the next one.
    void showHistory(const WorkingCopy& copy) {
        queue_->addOperation(std::make_shared<Work>([this, &copy] {
            std::optional<std::int64_t> at;
            do {
                const LogPage page = copy.log(copy.directory(), 2, at);
                loop_.post([this, page] { show(page); });
                at = page.next;
            } while (at);
            loop_.post([this, &copy] { cancelHistory(copy); });
        }));
    }

    void show(const LogPage& page) {
        for (const LogEntry& entry : page.entries) {
            std::cout << "  r" << entry.revision << ' ' << entry.message << '\n';
        }
        fail(page.error, RequestTypeLog);
    }

    /// What a person does who has seen enough.
    void cancelHistory(const WorkingCopy& copy) {
        std::stop_source stop;
        stop.request_stop();
        start(makeRequest<RequestTypeLog>()
                  .tree(copy.tree(), copy.repository())
                  .files({copy.directory()})
                  .request(),
              stop.get_token(), [this](const QuenSourceControlOperationPtr& operation) {
                  std::cout << (operation->isCancelled() ? "  cancelled\n" : "  too late\n");
                  finish();
              });
    }

    void fail(const Error& error, std::int32_t type) {
        if (error) {
            std::cout << "  failed: " << descriptionOfError(error, type) << '\n';
        }
    }

    void finish() {
        if (--open_ == 0) {
            loop_.stop();
            loop_.post([] {});
        }
    }

    QuenSourceControlProtocolPtr provider_;
    Settings settings_;
    std::deque<WorkingCopy> copies_;
    std::stop_source patience_;
    EventLoop loop_;
    std::size_t open_ = 0;
    /// One client at a time, so that the lines come in order; several are as well.
    OperationQueuePtr queue_ = OperationQueue::make(1);
};

} // namespace

int main(int count, char** words) {
    const Settings settings = settingsIn({words + 1, words + count});
    Error problem;
    const auto provider = loadProvider(installedModule(), &problem);
    if (provider == nullptr || settings.directories.empty()) {
        std::cerr << "Usage: environment [--user NAME --password WORD] [--progress] "
                     "[--patience SECONDS] DIRECTORY...\n"
                  << descriptionOfError(problem) << '\n';
        return 2;
    }
    RunContext::setProcessDefault(RunContext::processDefault().withCredentials(
        Credentials::make(std::make_shared<GivenPassword>(settings.user, settings.password))));
    Environment(provider, settings).run();
}
