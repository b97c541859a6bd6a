#include <algorithm>
#include <cstdio>
#include <cstring>

#include "Blocks.h"
#include "MainService.h"
#include "layouts/channel_ids.h"
#include "layouts/codes.h"

namespace qeltvd {

using namespace layouts;
using android::hardware::Void;

namespace {

/** Tells the info blocks of a context from its stream attributes. */
constexpr uint32_t kInfoKey = 0x20000;

}  // namespace

/** The track that a path plays. */
std::optional<AudioTrack> MainService::currentTrack(uint32_t path) const {
    for (const AudioTrack& track : mTv.presentation.tracks(path)) {
        if (track.current != 0) return track;
    }
    return std::nullopt;
}

MainService::Return<void> MainService::a_hidl_c_svctx_open(const String& name,
                                                           a_hidl_c_svctx_open_cb reply) {
    uint32_t context = 0;
    const int32_t code = mTv.presentation.openContext(name, &context);
    reply(context, code);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_c_svctx_close(uint32_t ctx) {
    return mTv.presentation.closeContext(ctx);
}

MainService::Return<void> MainService::a_hidl_c_svctx_get_64(uint32_t ctx, uint32_t type,
                                                             const Bytes& /*buf*/,
                                                             a_hidl_c_svctx_get_64_cb reply) {
    const auto path = mTv.presentation.pathOfContext(ctx);
    if (!path) {
        reply({}, kNotFound);
        return Void();
    }
    const Presentation::Status status = mTv.presentation.status(*path);
    switch (type) {
        case kContextPath:
            reply(textBytes(*path == Presentation::kMain ? "main" : "sub"), kOk);
            break;
        case kContextChannel:
            reply(wordBytes({status.channel ? status.channel->channelId : 0}), kOk);
            break;
        case kContextStatus:
            reply(wordBytes({static_cast<uint32_t>(status.status),
                             static_cast<uint32_t>(status.error)}),
                  kOk);
            break;
        case kContextSource:
            reply(wordBytes({static_cast<uint32_t>(status.source)}), kOk);
            break;
        case kContextName:
            reply(textBytes(status.channel ? status.channel->name
                                           : mTv.inputs.name(status.source, kNamePlain)),
                  kOk);
            break;
        default: {
            const auto block = mTv.presentation.block(ctx, type);
            reply(block ? Bytes(*block) : Bytes(), block ? kOk : kNotFound);
        }
    }
    return Void();
}

MainService::Return<void> MainService::a_hidl_c_svctx_get_video_src_resolution(
        uint32_t ctx, a_hidl_c_svctx_get_video_src_resolution_cb reply) {
    const auto path = mTv.presentation.pathOfContext(ctx);
    reply(path ? bytesOf(mTv.presentation.video(*path)) : Bytes(), path ? kOk : kNotFound);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_c_svctx_select_svc(uint32_t ctx, uint32_t v,
                                                                    const HIDL_SVCTX_SELECT_T& req,
                                                                    const Bytes& /*side*/,
                                                                    uint64_t tag) {
    const auto path = mTv.presentation.pathOfContext(ctx);
    if (!path) return kNotFound;
    const bool banner = (v & kSelectWithBanner) != 0;
    mTv.presentation.setTag(ctx, tag);
    if (const auto wanted = recordOf<SelectChannel>(req.specific)) {
        uint32_t channel = wanted->channel;
        if (channel == 0) {
            if (wanted->list > channel_ids::kMaximumList) return kNotFound;
            const auto found =
                    mTv.channels.byTriplet(static_cast<uint16_t>(wanted->list), wanted->networkId,
                                           wanted->streamId, wanted->serviceId);
            if (!found) return kNotFound;
            channel = found->channelId;
        }
        return mTv.presentation.select(*path, channel, banner);
    }
    if (const auto wanted = recordOf<SelectInput>(req.specific)) {
        return mTv.presentation.changeSource(*path, static_cast<int32_t>(wanted->source));
    }
    // Analogue services, which there are none of, have 192 bytes.
    if (req.specific.size() != 0) return kRefused;
    const std::string name = req.first;
    if (const auto source = Inputs::byName(name)) {
        return mTv.presentation.changeSource(*path, *source);
    }
    uint32_t major = 0, minor = 0;
    char rest = 0;
    const int read = sscanf(name.c_str(), "%4u.%3u%c", &major, &minor, &rest);
    const bool plain = name.find_first_not_of("0123456789") == std::string::npos;
    if ((read == 1 && plain) || read == 2) {
        return mTv.presentation.selectNumber(*path, major, read == 2 ? minor : 0, banner);
    }
    return kNotFound;
}

MainService::Return<int32_t> MainService::a_hidl_c_svctx_set_stream_attr_64(uint32_t ctx,
                                                                            uint32_t stream,
                                                                            uint32_t attr,
                                                                            const Bytes& data) {
    const auto path = mTv.presentation.pathOfContext(ctx);
    if (!path) return kNotFound;
    if (stream > kStreamSubtitle || attr > 0xff) return kBadValue;
    if (stream == kStreamAudio && attr == kStreamTrack) {
        const auto track = recordOf<uint32_t>(data);
        if (!track) return kBadValue;
        const int32_t code = mTv.presentation.selectTrack(*path, *track);
        if (code != kOk) return code;
    }
    return mTv.presentation.setBlock(ctx, kContextStreamAttribute | stream << 8 | attr, data);
}

MainService::Return<void> MainService::a_hidl_c_svctx_get_conn_attr(
        uint32_t ctx, uint32_t /*conn*/, uint32_t code, uint32_t len,
        a_hidl_c_svctx_get_conn_attr_cb reply) {
    const auto path = mTv.presentation.pathOfContext(ctx);
    if (!path) {
        reply({}, kNotFound);
        return Void();
    }
    const Connection all = mTv.presentation.connection(*path);
    Bytes data;
    switch (code) {
        case kConnectionAll:
            data = bytesOf(all);
            break;
        case kConnectionLocked:
            data = wordBytes({all.status == kTuningLocked || all.status == kTuningPlays});
            break;
        case kConnectionLevel:
            data = wordBytes({all.level});
            break;
        case kConnectionQuality:
            data = wordBytes({all.quality});
            break;
        case kConnectionBitErrors:
            data = wordBytes({all.bitErrors});
            break;
        default:
            reply({}, kNotFound);
            return Void();
    }
    if (data.size() == len) {
        reply(data, kOk);
    } else {
        reply({}, kBadValue);
    }
    return Void();
}

MainService::Return<void> MainService::a_hidl_c_svctx_set_conn_attr(
        uint32_t ctx, uint32_t /*conn*/, uint32_t code, const Bytes& data,
        a_hidl_c_svctx_set_conn_attr_cb reply) {
    const auto path = mTv.presentation.pathOfContext(ctx);
    const size_t size = code == kConnectionFrequency ? 32 : code == kConnectionRegion ? 16 : 4;
    int32_t result = kOk;
    uint32_t words[4] = {};
    if (!path) {
        result = kNotFound;
    } else if (data.size() != size) {
        result = kBadValue;
    } else {
        memcpy(words, data.data(), std::min(size, sizeof(words)));
        if (code == kConnectionFrequency) {
            result = mTv.presentation.changeFrequency(*path, words[0], 0, 0);
        } else if (code == kConnectionRegion) {
            result = mTv.presentation.setRegion(*path, {words[0], words[1], words[2], words[3]});
        } else if (code == kConnectionMute) {
            result = mTv.presentation.setMuted(*path, words[0] != 0);
        } else {
            result = kNotFound;
        }
    }
    reply(data, result);
    return Void();
}

MainService::Return<void> MainService::a_hidl_c_svctx_get_audio_info(
        uint32_t ctx, a_hidl_c_svctx_get_audio_info_cb reply) {
    const auto path = mTv.presentation.pathOfContext(ctx);
    const auto track = path ? currentTrack(*path) : std::nullopt;
    reply(track ? bytesOf(*track) : Bytes(), !path ? kNotFound : track ? kOk : kRefused);
    return Void();
}

MainService::Return<void> MainService::a_hidl_c_svctx_generic_get_info(
        uint32_t ctx, uint32_t /*v*/, uint32_t code, uint32_t len,
        a_hidl_c_svctx_generic_get_info_cb reply) {
    const auto path = mTv.presentation.pathOfContext(ctx);
    Bytes data;
    int32_t result = kOk;
    if (!path) {
        result = kNotFound;
    } else if (code == kInfoVideo) {
        data = bytesOf(mTv.presentation.video(*path));
    } else if (code == kInfoAudio) {
        const auto track = currentTrack(*path);
        if (track) data = bytesOf(*track);
        result = track ? kOk : kRefused;
    } else if (code == kInfoConnection) {
        data = bytesOf(mTv.presentation.connection(*path));
    } else {
        const auto block = mTv.presentation.block(ctx, kInfoKey | code);
        if (block) data = *block;
        result = block ? kOk : kNotFound;
    }
    // The client takes whatever comes: no more than it has asked for.
    if (data.size() > len) data.resize(len);
    reply(data, result);
    return Void();
}

MainService::Return<void> MainService::a_hidl_c_svctx_generic_set_info(
        uint32_t ctx, uint32_t /*v*/, uint32_t code, const Bytes& data,
        a_hidl_c_svctx_generic_set_info_cb reply) {
    const bool user = code >= kInfoUser && code <= kInfoUserLast;
    reply(data, user ? mTv.presentation.setBlock(ctx, kInfoKey | code, data) : kNotFound);
    return Void();
}

MainService::Return<void> MainService::a_hidl_c_scc_comp_open(uint32_t type, const String& name,
                                                              uint8_t marker, const Bytes& block,
                                                              a_hidl_c_scc_comp_open_cb reply) {
    uint32_t component = 0;
    const bool sound = block.size() == 0 ? marker == 0 : marker == 80 && block.size() == 12;
    const int32_t code = sound ? mTv.presentation.openComponent(type, name, &component) : kBadValue;
    reply(component, code);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_c_scc_comp_close(uint32_t comp) {
    return mTv.presentation.closeComponent(comp);
}

MainService::Return<int32_t> MainService::a_hidl_c_scc_vid_set_src_detect_nfy(uint32_t comp,
                                                                              uint64_t tag) {
    return mTv.presentation.watchSource(comp, tag);
}

}  // namespace qeltvd
