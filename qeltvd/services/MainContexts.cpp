#include <algorithm>
#include <cstdio>
#include <cstring>

#include "Blocks.h"
#include "ChannelDatabase.h"
#include "ChannelIds.h"
#include "Code.h"
#include "Inputs.h"
#include "MainService.h"
#include "Presentation.h"

namespace qeltvd {

namespace {

/** Distinguishes the info blocks of a context from its stream attributes. */
constexpr uint32_t kInfoKey = 0x20000;

}  // namespace

/** The track that a path plays. */
std::optional<QELTV_AUDIO_TRACK_T> MainService::currentTrack(uint32_t path) const {
    for (const QELTV_AUDIO_TRACK_T& track : mModels.presentation.tracks(path)) {
        if (track.current != 0) return track;
    }
    return std::nullopt;
}

Return<void> MainService::a_hidl_c_svctx_open(const String& name, a_hidl_c_svctx_open_cb reply) {
    uint32_t context = 0;
    const int32_t code = mModels.presentation.openContext(name, &context);
    reply(context, code);
    return Void();
}

Return<int32_t> MainService::a_hidl_c_svctx_close(uint32_t ctx) {
    return mModels.presentation.closeContext(ctx);
}

Return<void> MainService::a_hidl_c_svctx_get_64(uint32_t ctx, uint32_t type, const Bytes& buf,
                                                a_hidl_c_svctx_get_64_cb reply) {
    const auto path = mModels.presentation.pathOfContext(ctx);
    if (!path) {
        reply({}, kNotFound);
        return Void();
    }
    // A client without room for the attribute takes nothing, and learns of it by the code alone.
    const auto answer = [&](const Bytes& data) {
        const bool fits = data.size() <= buf.size();
        reply(fits ? data : Bytes(), fits ? kOk : kBadValue);
    };
    const Presentation::Status status = mModels.presentation.status(*path);
    switch (type) {
        case QELTV_CONTEXT_PATH:
            answer(textBytes(*path == Presentation::kMain ? "main" : "sub"));
            break;
        case QELTV_CONTEXT_CHANNEL:
            answer(wordBytes({status.channel ? status.channel->channelId : 0}));
            break;
        case QELTV_CONTEXT_STATUS:
            answer(wordBytes(
                    {static_cast<uint32_t>(status.status), static_cast<uint32_t>(status.error)}));
            break;
        case QELTV_CONTEXT_SOURCE:
            answer(wordBytes({static_cast<uint32_t>(status.source)}));
            break;
        case QELTV_CONTEXT_NAME:
            answer(textBytes(status.channel
                                     ? status.channel->name
                                     : mModels.inputs.name(status.source, QELTV_NAME_PLAIN)));
            break;
        default: {
            const auto block = mModels.presentation.block(ctx, type);
            if (block) {
                answer(Bytes(*block));
            } else {
                reply({}, kNotFound);
            }
        }
    }
    return Void();
}

Return<void> MainService::a_hidl_c_svctx_get_video_src_resolution(
        uint32_t ctx, a_hidl_c_svctx_get_video_src_resolution_cb reply) {
    const auto path = mModels.presentation.pathOfContext(ctx);
    reply(path ? bytesOf(mModels.presentation.video(*path)) : Bytes(), path ? kOk : kNotFound);
    return Void();
}

Return<int32_t> MainService::a_hidl_c_svctx_select_svc(uint32_t ctx, uint32_t v,
                                                       const HIDL_SVCTX_SELECT_T& req,
                                                       const Bytes& /*side*/, uint64_t tag) {
    const auto path = mModels.presentation.pathOfContext(ctx);
    if (!path) return kNotFound;
    const bool banner = (v & QELTV_SELECT_WITH_BANNER) != 0;
    mModels.presentation.setTag(ctx, tag);
    if (const auto wanted = recordOf<QELTV_SELECT_CHANNEL_T>(req.specific)) {
        uint32_t channel = wanted->channel;
        if (channel == 0) {
            if (wanted->list > channel_ids::kMaximumList) return kNotFound;
            const auto found = mModels.channels.byTriplet(static_cast<uint16_t>(wanted->list),
                                                          wanted->networkId, wanted->streamId,
                                                          wanted->serviceId);
            if (!found) return kNotFound;
            channel = found->channelId;
        }
        return mModels.presentation.select(*path, channel, banner);
    }
    if (const auto wanted = recordOf<QELTV_SELECT_INPUT_T>(req.specific)) {
        return mModels.presentation.changeSource(*path, static_cast<int32_t>(wanted->source));
    }
    // Analogue services, which there are none of, have 192 bytes.
    if (req.specific.size() != 0) return kRefused;
    const std::string name = req.first;
    if (const auto source = Inputs::byName(name)) {
        return mModels.presentation.changeSource(*path, *source);
    }
    uint32_t major = 0, minor = 0;
    char rest = 0;
    const int read = sscanf(name.c_str(), "%4u.%3u%c", &major, &minor, &rest);
    const bool plain = name.find_first_not_of("0123456789") == std::string::npos;
    if ((read == 1 && plain) || read == 2) {
        return mModels.presentation.selectNumber(*path, major, read == 2 ? minor : 0, banner);
    }
    return kNotFound;
}

Return<int32_t> MainService::a_hidl_c_svctx_set_stream_attr_64(uint32_t ctx, uint32_t stream,
                                                               uint32_t attr, const Bytes& data) {
    const auto path = mModels.presentation.pathOfContext(ctx);
    if (!path) return kNotFound;
    if (stream > QELTV_STREAM_SUBTITLE || attr > 0xff) return kBadValue;
    if (stream == QELTV_STREAM_AUDIO && attr == QELTV_STREAM_TRACK) {
        const auto track = recordOf<uint32_t>(data);
        if (!track) return kBadValue;
        const int32_t code = mModels.presentation.selectTrack(*path, *track);
        if (code != kOk) return code;
    }
    return mModels.presentation.setBlock(ctx, QELTV_CONTEXT_STREAM_ATTRIBUTE | stream << 8 | attr,
                                         data);
}

Return<void> MainService::a_hidl_c_svctx_get_conn_attr(uint32_t ctx, uint32_t /*conn*/,
                                                       uint32_t code, uint32_t len,
                                                       a_hidl_c_svctx_get_conn_attr_cb reply) {
    const auto path = mModels.presentation.pathOfContext(ctx);
    if (!path) {
        reply({}, kNotFound);
        return Void();
    }
    const QELTV_CONNECTION_T all = mModels.presentation.connection(*path);
    Bytes data;
    switch (code) {
        case QELTV_CONNECTION_ALL:
            data = bytesOf(all);
            break;
        case QELTV_CONNECTION_LOCKED:
            data = wordBytes(
                    {all.status == QELTV_TUNING_LOCKED || all.status == QELTV_TUNING_PLAYS});
            break;
        case QELTV_CONNECTION_LEVEL:
            data = wordBytes({all.level});
            break;
        case QELTV_CONNECTION_QUALITY:
            data = wordBytes({all.quality});
            break;
        case QELTV_CONNECTION_BIT_ERRORS:
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

Return<void> MainService::a_hidl_c_svctx_set_conn_attr(uint32_t ctx, uint32_t /*conn*/,
                                                       uint32_t code, const Bytes& data,
                                                       a_hidl_c_svctx_set_conn_attr_cb reply) {
    const auto path = mModels.presentation.pathOfContext(ctx);
    const size_t size = code == QELTV_CONNECTION_FREQUENCY ? 32
                        : code == QELTV_CONNECTION_REGION  ? 16
                                                           : 4;
    int32_t result = kOk;
    uint32_t words[4] = {};
    if (!path) {
        result = kNotFound;
    } else if (data.size() != size) {
        result = kBadValue;
    } else {
        memcpy(words, data.data(), std::min(size, sizeof(words)));
        if (code == QELTV_CONNECTION_FREQUENCY) {
            result = mModels.presentation.changeFrequency(*path, words[0], 0, 0);
        } else if (code == QELTV_CONNECTION_REGION) {
            result =
                    mModels.presentation.setRegion(*path, {words[0], words[1], words[2], words[3]});
        } else if (code == QELTV_CONNECTION_MUTE) {
            result = mModels.presentation.setMuted(*path, words[0] != 0);
        } else {
            result = kNotFound;
        }
    }
    reply(data, result);
    return Void();
}

Return<void> MainService::a_hidl_c_svctx_get_audio_info(uint32_t ctx,
                                                        a_hidl_c_svctx_get_audio_info_cb reply) {
    const auto path = mModels.presentation.pathOfContext(ctx);
    const auto track = path ? currentTrack(*path) : std::nullopt;
    reply(track ? bytesOf(*track) : Bytes(), !path ? kNotFound : track ? kOk : kRefused);
    return Void();
}

Return<void> MainService::a_hidl_c_svctx_generic_get_info(
        uint32_t ctx, uint32_t /*v*/, uint32_t code, uint32_t len,
        a_hidl_c_svctx_generic_get_info_cb reply) {
    const auto path = mModels.presentation.pathOfContext(ctx);
    Bytes data;
    int32_t result = kOk;
    if (!path) {
        result = kNotFound;
    } else if (code == QELTV_INFO_VIDEO) {
        data = bytesOf(mModels.presentation.video(*path));
    } else if (code == QELTV_INFO_AUDIO) {
        const auto track = currentTrack(*path);
        if (track) data = bytesOf(*track);
        result = track ? kOk : kRefused;
    } else if (code == QELTV_INFO_CONNECTION) {
        data = bytesOf(mModels.presentation.connection(*path));
    } else if (code == QELTV_INFO_SCREEN) {
        data = bytesOf(mModels.presentation.screen(*path));
    } else {
        const auto block = mModels.presentation.block(ctx, kInfoKey | code);
        if (block) data = *block;
        result = block ? kOk : kNotFound;
    }
    // The client copies all that arrives, so it gets no more than it has asked for.
    if (data.size() > len) data.resize(len);
    reply(data, result);
    return Void();
}

Return<void> MainService::a_hidl_c_svctx_generic_set_info(
        uint32_t ctx, uint32_t /*v*/, uint32_t code, const Bytes& data,
        a_hidl_c_svctx_generic_set_info_cb reply) {
    const bool user = code >= QELTV_INFO_USER && code <= QELTV_INFO_USER_LAST;
    reply(data, user ? mModels.presentation.setBlock(ctx, kInfoKey | code, data) : kNotFound);
    return Void();
}

Return<void> MainService::a_hidl_c_scc_comp_open(uint32_t type, const String& name, uint8_t marker,
                                                 const Bytes& block,
                                                 a_hidl_c_scc_comp_open_cb reply) {
    uint32_t component = 0;
    const bool sound = block.size() == 0 ? marker == 0 : marker == 80 && block.size() == 12;
    const int32_t code =
            sound ? mModels.presentation.openComponent(type, name, &component) : kBadValue;
    reply(component, code);
    return Void();
}

Return<int32_t> MainService::a_hidl_c_scc_comp_close(uint32_t comp) {
    return mModels.presentation.closeComponent(comp);
}

Return<int32_t> MainService::a_hidl_c_scc_vid_set_src_detect_nfy(uint32_t comp, uint64_t tag) {
    return mModels.presentation.watchSource(comp, tag);
}

}  // namespace qeltvd
