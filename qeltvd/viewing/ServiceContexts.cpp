#include "ServiceContexts.h"

namespace qeltvd {

using Callback = Notifier::Callback;

ServiceContexts::ServiceContexts(Notifier& notifier) : mNotifier(notifier) {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path)
        mContexts[QELTV_CONTEXT_OF_MAIN + path] = {path, {}, {}};
}

Code ServiceContexts::open(uint32_t path, uint32_t* context) {
    if (mContexts.size() >= kLimit + QELTV_PATHS) return kRefused;
    *context = mNextHandle++;
    mContexts[*context] = {path, {}, {}};
    return kOk;
}

Code ServiceContexts::close(uint32_t context) {
    if (context <= QELTV_PATHS) return kRefused;
    return mContexts.erase(context) != 0 ? kOk : kNotFound;
}

std::optional<uint32_t> ServiceContexts::pathOf(uint32_t context) const {
    const auto found = mContexts.find(context);
    if (found == mContexts.end()) return std::nullopt;
    return found->second.path;
}

void ServiceContexts::setTag(uint32_t context, uint64_t tag) {
    const auto found = mContexts.find(context);
    if (found != mContexts.end()) found->second.tag = tag;
}

Code ServiceContexts::setBlock(uint32_t context, uint32_t key, const Bytes& block) {
    if (block.size() > kBlockSizeLimit) return kBadValue;
    const auto found = mContexts.find(context);
    if (found == mContexts.end()) return kNotFound;
    auto& blocks = found->second.blocks;
    if (blocks.size() >= kBlockLimit && blocks.count(key) == 0) return kRefused;
    blocks[key] = block;
    return kOk;
}

std::optional<ServiceContexts::Bytes> ServiceContexts::block(uint32_t context, uint32_t key) const {
    const auto found = mContexts.find(context);
    if (found == mContexts.end()) return std::nullopt;
    const auto block = found->second.blocks.find(key);
    if (block == found->second.blocks.end()) return std::nullopt;
    return block->second;
}

Code ServiceContexts::openComponent(uint32_t type, uint32_t path, uint32_t* component) {
    if (type > QELTV_COMPONENT_SUBTITLE) return kBadValue;
    if (mComponents.size() >= kLimit) return kRefused;
    *component = mNextHandle++;
    mComponents[*component] = {type, path, {}};
    return kOk;
}

Code ServiceContexts::closeComponent(uint32_t component) {
    return mComponents.erase(component) != 0 ? kOk : kNotFound;
}

Code ServiceContexts::watchSource(uint32_t component, uint64_t tag, const VideoLookup& videoOf) {
    const auto found = mComponents.find(component);
    if (found == mComponents.end()) return kNotFound;
    if (found->second.type != QELTV_COMPONENT_VIDEO) return kBadValue;
    found->second.tag = tag;
    notifySource(component, found->second, videoOf(found->second.path));
    return kOk;
}

void ServiceContexts::notifyStep(const Step& step) {
    for (const auto& [handle, context] : mContexts) {
        if (context.path != step.path) continue;
        mNotifier.notify(&Callback::a_hidl_x_svctx_listener_nfy_fct, handle,
                         static_cast<uint16_t>(step.event), static_cast<uint16_t>(step.error),
                         static_cast<uint16_t>(step.path), context.tag.value_or(0));
        if (context.tag) {
            mNotifier.notify(&Callback::a_hidl_x_svctx_select_nfy_fct, handle,
                             static_cast<uint32_t>(step.event), step.channel,
                             static_cast<uint32_t>(step.error), *context.tag);
        }
    }
}

void ServiceContexts::notifySource(uint32_t path, const QELTV_VIDEO_SOURCE_T& video) {
    for (const auto& [handle, component] : mComponents) {
        if (component.path == path) notifySource(handle, component, video);
    }
}

void ServiceContexts::notifySource(uint32_t handle, const Component& component,
                                   const QELTV_VIDEO_SOURCE_T& video) {
    if (!component.tag) return;
    const QELTV_SOURCE_DETECT what = video.width != 0 ? QELTV_SOURCE_DETECTED : QELTV_SOURCE_LOST;
    mNotifier.notify(&Callback::a_hidl_x_scc_vid_src_detect_nfy_fct, handle,
                     static_cast<uint32_t>(what), *component.tag, video.width, video.height);
}

}  // namespace qeltvd
