#include "imaging/process/SuddenEnd.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <new>
#include <system_error>
#include <vector>

namespace lumirra {
namespace {

struct Registry {
    std::mutex mutex;
    std::vector<const std::function<void()>*> removals;
};

/// Never destroyed: threads may still end suddenly while the process ends in order.
Registry& TheRegistry() {
    static auto* const registry = new Registry;
    return *registry;
}

QString NoThread() {
    return QStringLiteral("The system does not let the program have the threads that it needs.");
}

QtMessageHandler toolkitHandler = nullptr;

/// What the toolkit says when its thread could not be made; whoever asked for it waits for ever.
bool MeansNoThread(const QString& remark) {
    return remark.startsWith(QLatin1String("QThread::start: Thread creation error"));
}

void HearRemark(QtMsgType type, const QMessageLogContext& context, const QString& remark) {
    if (MeansNoThread(remark)) {
        EndAtOnce(NoThread());
    }
    if (type == QtFatalMsg) {
        EndAtOnce(remark);
    }
    if (toolkitHandler != nullptr) {
        toolkitHandler(type, context, remark);
    }
}

void Ignore(QtMsgType, const QMessageLogContext&, const QString&) {}

[[noreturn]] void HearOfUnanswered() {
    try {
        if (const std::exception_ptr unanswered = std::current_exception()) {
            std::rethrow_exception(unanswered);
        }
    } catch (const std::bad_alloc&) {
        EndAtOnce(QStringLiteral("There is not enough memory."));
    } catch (const std::system_error& error) {
        EndAtOnce(error.code() == std::errc::resource_unavailable_try_again
                      ? NoThread()
                      : QString::fromLocal8Bit(error.what()));
    } catch (...) {
        std::abort();  // a mistake in the program
    }
    std::abort();
}

}  // namespace

AtSuddenEnd::AtSuddenEnd(std::function<void()> remove) : remove_(std::move(remove)) {
    Registry& registry = TheRegistry();
    const std::scoped_lock lock(registry.mutex);
    registry.removals.push_back(&remove_);
}

AtSuddenEnd::~AtSuddenEnd() {
    Registry& registry = TheRegistry();
    const std::scoped_lock lock(registry.mutex);
    std::erase(registry.removals, &remove_);
}

void EndAtOnce(const QString& sentence) {
    Registry& registry = TheRegistry();
    registry.mutex.lock();  // for good: nobody else ends the process meanwhile
    std::for_each(registry.removals.rbegin(), registry.removals.rend(),
                  [](const auto* remove) { (*remove)(); });
    if (!sentence.isEmpty()) {
        std::fprintf(stderr, "%s: %s\n", program_invocation_short_name,
                     sentence.toLocal8Bit().constData());
    }
    _exit(1);
}

void EndByOneSentence(bool othersToo) {
    std::set_terminate(HearOfUnanswered);
    toolkitHandler = qInstallMessageHandler(HearRemark);
    if (!othersToo) {
        toolkitHandler = Ignore;
    }
}

}  // namespace lumirra
