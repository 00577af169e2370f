#include "registry/registry_watch.h"

#include <poll.h>
#include <sys/inotify.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>
#include <list>
#include <map>
#include <thread>

#include "core/last_error.h"

namespace win32 {
namespace {

namespace fs = std::filesystem;

// A value's file is created by a rename, a subkey's folder by mkdir. That a folder is deleted while
// its key is open shows in the folder above only.
constexpr std::uint32_t kInteresting = IN_MOVED_TO | IN_DELETE | IN_CREATE | IN_ONLYDIR;

struct Notification {
    std::shared_ptr<RegistryKey> key;
    bool subtree;
    std::shared_ptr<Event> event;
    std::map<int, std::string> folders = {};  // the watched ones, with their paths below the key
    int above = -1;                           // the watched folder that contains the key
};

struct Change {
    int watch;
    std::uint32_t kind;
    std::string file;
};

// One for the process. Its lock is taken before the state lock.
class Watcher {
public:
    static Watcher& Get() {
        static Watcher& watcher = *new Watcher;
        return watcher;
    }

    DWORD Arm(Notification notification) {
        if (!m_changes) return ERROR_TOO_MANY_OPEN_FILES;
        Drain();
        const std::lock_guard guard(m_mutex);
        {
            const auto lock = simulator::LockState();
            notification.event->signalled = false;
        }
        std::error_code error;
        const fs::path folder = fs::read_symlink(notification.key->FolderPath(), error);
        notification.above = Watch(folder.parent_path());
        WatchFolder(notification, "");
        if (notification.folders.empty()) return ErrorOfErrno(errno);
        // A key that was deleted before it was watched would never report a change.
        if (notification.key->IsDeleted()) return ERROR_KEY_DELETED;
        m_armed.push_back(std::move(notification));
        return ERROR_SUCCESS;
    }

    void FireIf(const std::function<bool(const Notification&)>& condition) {
        const std::lock_guard guard(m_mutex);
        FireLocked(condition);
    }

    // Processes all changes so far. When it returns, the events are set.
    void Drain() {
        const std::lock_guard guard(m_mutex);
        alignas(inotify_event) char buffer[16 * 1024];
        for (;;) {
            const ssize_t size = read(m_changes.Get(), buffer, sizeof buffer);
            if (size < 0 && errno == EINTR) continue;
            if (size <= 0) return;
            for (const char* next = buffer; next < buffer + size;) {
                inotify_event record;
                std::memcpy(&record, next, sizeof record);
                Handle({record.wd, record.mask,
                        record.len ? std::string(next + sizeof record) : std::string()});
                next += sizeof record + record.len;
            }
        }
    }

private:
    Watcher() : m_changes(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        if (!m_changes) return;
        simulator::AddExternalSource([this] { Drain(); });
        std::thread([this] {
            for (pollfd source{m_changes.Get(), POLLIN, 0};;)
                if (poll(&source, 1, -1) > 0) Drain();
        }).detach();
    }

    int Watch(const std::string& path) {
        return inotify_add_watch(m_changes.Get(), path.c_str(), kInteresting);
    }

    // Watches the folder and, for a subtree, those below; true if one of them contains a value.
    bool WatchFolder(Notification& notification, const std::string& below) {
        const std::string path = notification.key->FolderPath() + "/" + below;
        const int watch = Watch(path);
        if (watch < 0) return false;
        notification.folders[watch] = below;
        if (!notification.subtree) return false;
        bool hasValues = false;
        std::error_code error;
        for (const fs::directory_entry& entry : fs::directory_iterator(path, error)) {
            const std::string name = entry.path().filename();
            if (RegistryKey::IsValueFile(name))
                hasValues = true;
            else if (entry.is_directory(error))
                hasValues |= WatchFolder(notification, below + name + "/");
        }
        return hasValues;
    }

    void Handle(const Change& change) {
        if (change.kind & IN_Q_OVERFLOW) FireLocked([](const Notification&) { return true; });
        if (change.kind & IN_IGNORED) return;
        FireLocked([&](const Notification& each) { return IsHit(each, change); });
        if ((change.kind & IN_CREATE) && (change.kind & IN_ISDIR)) Follow(change);
    }

    static bool IsHit(const Notification& notification, const Change& change) {
        if (change.watch == notification.above && (change.kind & IN_DELETE) &&
            notification.key->IsDeleted())
            return true;
        return notification.folders.contains(change.watch) &&
               (change.kind & (IN_MOVED_TO | IN_DELETE)) && RegistryKey::IsValueFile(change.file);
    }

    // A subkey has been made: it is watched too, and values that came into it before that count.
    void Follow(const Change& change) {
        std::vector<const Notification*> hit;
        for (Notification& each : m_armed) {
            const auto folder = each.folders.find(change.watch);
            if (folder == each.folders.end() || !each.subtree) continue;
            if (WatchFolder(each, folder->second + change.file + "/")) hit.push_back(&each);
        }
        FireLocked([&](const Notification& each) {
            return std::find(hit.begin(), hit.end(), &each) != hit.end();
        });
    }

    void FireLocked(const std::function<bool(const Notification&)>& condition) {
        for (auto each = m_armed.begin(); each != m_armed.end();) {
            if (!condition(*each)) {
                ++each;
                continue;
            }
            {
                const auto lock = simulator::LockState();
                each->event->Set();
            }
            const Notification fired = std::move(*each);
            each = m_armed.erase(each);
            for (const auto& [watch, below] : fired.folders) Unwatch(watch);
            Unwatch(fired.above);
        }
    }

    void Unwatch(int watch) {
        if (watch >= 0 && !IsWatched(watch)) inotify_rm_watch(m_changes.Get(), watch);
    }

    bool IsWatched(int watch) const {
        return std::any_of(m_armed.begin(), m_armed.end(), [=](const Notification& each) {
            return each.above == watch || each.folders.contains(watch);
        });
    }

    const Descriptor m_changes;
    std::mutex m_mutex;
    std::list<Notification> m_armed;
};

}  // namespace

DWORD ArmNotification(std::shared_ptr<RegistryKey> key, bool subtree,
                      std::shared_ptr<Event> event) {
    if (key->IsDeleted()) return ERROR_KEY_DELETED;
    return Watcher::Get().Arm({std::move(key), subtree, std::move(event)});
}

void FireNotificationsOf(const RegistryKey& key) {
    Watcher::Get().FireIf([&](const Notification& each) { return each.key.get() == &key; });
}

}  // namespace win32
