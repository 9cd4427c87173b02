#include "sources/video/DamageReports.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lumirra {

namespace {

// How the messages begin for parts that were not decoded, and for those that were guessed.
constexpr std::array<std::string_view, 2> kOfDamage = {"error while decoding MB", "concealing %d"};

bool TellsDamage(std::string_view format) {
    return std::any_of(kOfDamage.begin(), kOfDamage.end(), [&](std::string_view start) {
        return format.substr(0, start.size()) == start;
    });
}

}  // namespace

// The library has one log for the whole process: who listens to it is known here alone.
struct DamageReports::Listeners {
    std::mutex mutex;
    std::set<const void*> known;

    static Listeners& All() {
        static Listeners all;
        return all;
    }
};

DamageReports::~DamageReports() {
    Listeners& all = Listeners::All();
    const std::lock_guard lock(all.mutex);
    all.known.erase(this);
}

// The decoder's threads have copies of its context, with the fields of the packet they work at.
void DamageReports::OnLog(void* context, int /*level*/, const char* format, va_list /*arguments*/) {
    if (!context || !format || !TellsDamage(format) ||
        *static_cast<const AVClass* const*>(context) != avcodec_get_class()) {
        return;
    }
    const auto& decoder = *static_cast<const AVCodecContext*>(context);
    Listeners& all = Listeners::All();
    const std::lock_guard listening(all.mutex);
    // Decoders that others in the process opened have something else there, or nothing.
    if (all.known.count(decoder.opaque) == 0) {
        return;
    }
    auto& self = *static_cast<DamageReports*>(decoder.opaque);
    const std::lock_guard lock(self.mutex_);
    self.damaged_.insert(decoder.reordered_opaque);
}

void DamageReports::Listen() {
    av_log_set_callback(OnLog);
}

void DamageReports::Attach(AVCodecContext& decoder) {
    {
        Listeners& all = Listeners::All();
        const std::lock_guard lock(all.mutex);
        all.known.insert(this);
    }
    decoder.opaque = this;
    Listen();
}

void DamageReports::NextPacket(AVCodecContext& decoder) {
    decoder.reordered_opaque = ++packet_;
}

bool DamageReports::Take(const AVFrame& frame) {
    const std::lock_guard lock(mutex_);
    return damaged_.erase(frame.reordered_opaque) > 0;
}

void DamageReports::Clear() {
    const std::lock_guard lock(mutex_);
    damaged_.clear();
}

}  // namespace lumirra
