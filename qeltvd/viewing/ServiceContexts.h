#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "Code.h"
#include "Notifier.h"
#include "layouts/presentation.h"

namespace qeltvd {

/**
 * Service contexts and stream components: what applications open on the video paths, and the
 * notifications that they get. Used under its owner's lock.
 */
class ServiceContexts {
  public:
    using Bytes = std::vector<uint8_t>;
    /** Open contexts beside those of the paths, and open components. */
    static constexpr size_t kLimit = 16;
    static constexpr size_t kBlockSizeLimit = 4096;
    static constexpr size_t kBlockLimit = 64;

    /** Opens the contexts of the paths themselves. */
    explicit ServiceContexts(Notifier& notifier);

    [[nodiscard]] Code open(uint32_t path, uint32_t* context);
    /** kRefused for those of the paths themselves. */
    [[nodiscard]] Code close(uint32_t context);
    std::optional<uint32_t> pathOf(uint32_t context) const;
    /** The tag of a selection, which its notifications carry. */
    void setTag(uint32_t context, uint64_t tag);
    /** Keeps a block with a context. */
    [[nodiscard]] Code setBlock(uint32_t context, uint32_t key, const Bytes& block);
    std::optional<Bytes> block(uint32_t context, uint32_t key) const;

    /** @param type a QELTV_COMPONENT */
    [[nodiscard]] Code openComponent(uint32_t type, uint32_t path, uint32_t* component);
    [[nodiscard]] Code closeComponent(uint32_t component);
    using VideoLookup = std::function<QELTV_VIDEO_SOURCE_T(uint32_t path)>;
    /** Notifies of the state of the source at once, and from then on of its changes. */
    [[nodiscard]] Code watchSource(uint32_t component, uint64_t tag, const VideoLookup& videoOf);

    /** A step of a path. */
    struct Step {
        uint32_t path;
        QELTV_BROADCAST_EVENT event;
        QELTV_TUNING_ERROR error;
        /** Id of the channel that the path shows; 0 for none. */
        uint32_t channel;
    };
    void notifyStep(const Step& step);
    void notifySource(uint32_t path, const QELTV_VIDEO_SOURCE_T& video);

  private:
    struct Context {
        uint32_t path;
        std::optional<uint64_t> tag;
        std::map<uint32_t, Bytes> blocks;
    };
    struct Component {
        uint32_t type;
        uint32_t path;
        std::optional<uint64_t> tag;
    };
    void notifySource(uint32_t handle, const Component& component,
                      const QELTV_VIDEO_SOURCE_T& video);

    Notifier& mNotifier;
    std::map<uint32_t, Context> mContexts;
    std::map<uint32_t, Component> mComponents;
    /** Handles below are those of the paths. */
    uint32_t mNextHandle = 0x100;
};

}  // namespace qeltvd
