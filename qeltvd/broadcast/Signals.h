#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Event.h"
#include "LineUp.h"
#include "PacketSource.h"
#include "StreamStructs.h"
#include "TeletextView.h"
#include "layouts/presentation.h"
#include "layouts/teletext.h"

namespace qeltvd {

/** How well a frequency is received. */
struct Reception {
    bool signal = false;
    /** Nothing has been received yet, and may still be. */
    bool waiting = false;
    /** 0 to 100. */
    uint32_t level = 0;
    /** 0 to 100. */
    uint32_t quality = 0;
    /** In 10^9 bits. */
    uint32_t bitErrors = 0;
};

/** The picture of a service or an input. */
struct VideoFormat {
    uint32_t width = 0;
    uint32_t height = 0;
    /** Frames per second times 1000. */
    uint32_t frameRate = 0;
    bool interlaced = false;
    uint32_t aspectWidth = 16;
    uint32_t aspectHeight = 9;
    QELTV_VIDEO_CODEC codec = QELTV_VIDEO_NONE;
    /** Of a sample. */
    uint32_t bits = 8;
    /** 0 if it is unknown. */
    uint32_t kbitPerSecond = 0;
};

/** A sound track of a service or an input. */
struct SoundTrack {
    /** 0 for an input. */
    uint32_t pid;
    /** ISO 639-2 code. */
    std::string language;
    QELTV_AUDIO_CODEC codec;
    uint8_t channels;
    QELTV_AUDIO_PURPOSE purpose;
    /** 0 if it is unknown. */
    uint32_t kbitPerSecond;
    /** Hz. */
    uint32_t sampleRate = 48000;
};

/** Subtitles of a service. */
struct SubtitleTrack {
    /** ISO 639-2 code. */
    std::string language;
    QELTV_SUBTITLE_KIND kind;
    /** The page of teletext that has them; 0 for those that are pictures. */
    uint16_t page;
};

/** Which captions a service has. */
struct CaptionStreams {
    /** Channels of line 21 that have had text, bit 0 for the first of eight. */
    uint8_t line21 = 0;
    /** Services of CEA-708 that are announced, bit 0 for the first of six. */
    uint8_t digital = 0;
};

/** What a scan finds on a multiplex. */
struct Survey {
    bool signal = false;
    /** With the ids and the name that are broadcast. */
    Multiplex multiplex;
    /** The name of the network; empty if none is broadcast. */
    std::string network;
    /** Number 0 if the broadcast gives none. */
    std::vector<Channel> services;
    /** From where on such services are numbered. */
    uint32_t firstNumber = 1;
};

/** A region of viewers, in one of three levels. */
struct TargetRegion {
    uint8_t level;
    uint16_t primary;
    uint16_t secondary;
    uint16_t tertiary;
    std::string name;
};

/** A service that is received; ends with the object. */
class Tuning {
  public:
    virtual ~Tuning() = default;
    Tuning() = default;
    Tuning(const Tuning&) = delete;
    Tuning& operator=(const Tuning&) = delete;
};

/**
 * What a multiplex broadcasts, simulated or received. All functions may be called on any thread.
 * Channels and multiplexes are those of the channel data.
 */
class Signals {
  public:
    virtual ~Signals() = default;

    /** What a scan finds; waits for tables. @param wanted asked from time to time; false ends it */
    virtual Survey survey(const Region& region, const Multiplex& multiplex,
                          const std::function<bool()>& wanted) = 0;
    /** Whether a survey has to wait for what is being sent. */
    virtual bool live() const = 0;
    /** Receives a service from now on. */
    virtual std::unique_ptr<Tuning> tune(const Channel& channel) = 0;

    virtual Reception reception(const Multiplex& multiplex) const = 0;
    /** The picture of a service; nothing for one without. */
    virtual std::optional<VideoFormat> video(const Channel& channel,
                                             const Multiplex& multiplex) const = 0;
    /** The sound tracks of a service, the main one first. */
    virtual std::vector<SoundTrack> tracks(const Channel& channel) const = 0;
    /**
     * Whether a service cannot be shown.
     *
     * @param descrambler a key or a CAM for it is at hand, which is enough if it is simulated
     */
    virtual bool scrambled(const Channel& channel, bool descrambler) const = 0;

    // Text. Received pages and captions are those since the service was tuned to.

    /** A page of teletext. @param subpage from 1; 0 for the one that is on air */
    virtual TeletextView teletext(const Channel& channel, uint16_t number, uint32_t subpage,
                                  const TeletextTopics& topics) const = 0;
    /** The pages that TOP navigation lists, in order; none without it. */
    virtual std::vector<stream::TopPage> teletextTop(const Channel& channel) const = 0;
    virtual std::vector<SubtitleTrack> subtitles(const Channel& channel) const = 0;
    /** Nothing for a simulated service: it has all, and none has a text. */
    virtual std::optional<CaptionStreams> captionStreams(const Channel& channel) const = 0;
    /** The rows that a channel of line 21 shows, from 1: four of captions, four of text. */
    virtual std::vector<std::string> captions(const Channel& channel, uint8_t line21) const = 0;

    // The guide. A simulated one covers some days around `now`.

    /** What overlaps a time, in order of the begins. */
    virtual std::vector<Event> events(const Channel& channel, int64_t from, int64_t to,
                                      int64_t now) const = 0;
    virtual std::optional<Event> event(const Channel& channel, uint16_t id, int64_t now) const = 0;
    virtual std::optional<Event> present(const Channel& channel, int64_t now) const = 0;
    virtual std::optional<Event> following(const Channel& channel, int64_t now) const = 0;

    /** The regions that services are meant for; none if they are not broadcast. */
    virtual std::vector<TargetRegion> targetRegions() const = 0;

    // What comes beside services, and is never simulated: the models do without.

    /** Milliseconds since 1970; nothing while it is not received. Never goes back. */
    virtual std::optional<int64_t> time() const = 0;
    /** The last table of the time, with the offsets of places. */
    virtual std::optional<stream::Time> timeTable() const = 0;
    virtual std::vector<stream::RatingRegion> ratings() const = 0;
    virtual std::vector<stream::Alert> alerts() const = 0;
    virtual std::vector<stream::Application> applications(const Channel& channel) const = 0;

    /**
     * The packets of a service, a stream of its own, from now on.
     *
     * @param rate bytes per second if they are simulated
     */
    virtual std::unique_ptr<PacketSource> packets(const Channel& channel, uint32_t rate) = 0;
    /** The same for a program that shows them; null if they are simulated. */
    virtual std::unique_ptr<PacketSource> viewerPackets(const Channel& channel) = 0;
    /**
     * Descrambles a service from now on, if that can be done.
     *
     * @param key BISS, 8 bytes with the sums or with zeros for them; empty for none
     */
    virtual void setKey(const Channel& channel, const std::vector<uint8_t>& key) = 0;
};

}  // namespace qeltvd
