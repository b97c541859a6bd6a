#include "StreamFacts.h"

#include <algorithm>

namespace qeltvd::stream {

std::string Service::name() const {
    if (description && !description->name.empty()) return description->name;
    if (channel && !channel->name.empty()) return channel->name;
    return "Service " + std::to_string(id);
}

const Component* Service::find(ComponentKind kind) const {
    const auto found = std::find_if(components.begin(), components.end(),
                                    [&](const Component& each) { return each.kind == kind; });
    return found == components.end() ? nullptr : &*found;
}

bool Service::isRadio() const {
    constexpr uint8_t kRadio = 0x02, kAdvancedRadio = 0x0a, kAtscRadio = 3;
    if (channel) return channel->type == kAtscRadio;
    if (description && description->type != 0) {
        return description->type == kRadio || description->type == kAdvancedRadio;
    }
    return find(ComponentKind::kVideo) == nullptr && find(ComponentKind::kAudio) != nullptr;
}

bool Service::isData() const {
    constexpr uint8_t kTeletext = 0x03, kData = 0x0c, kMhp = 0x10, kAtscData = 4;
    if (channel) return channel->type >= kAtscData;
    if (description && description->type != 0) {
        return description->type == kTeletext || description->type == kData ||
               description->type == kMhp;
    }
    return !components.empty() && find(ComponentKind::kVideo) == nullptr &&
           find(ComponentKind::kAudio) == nullptr;
}

}  // namespace qeltvd::stream
