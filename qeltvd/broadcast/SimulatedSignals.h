#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>

#include "Signals.h"

namespace qeltvd {

/**
 * Simulated signals: services, reception levels, picture formats and sound tracks follow from scan
 * tables and channel data, and are the same on every machine.
 */
class SimulatedSignals : public Signals {
  public:
    Survey survey(const Region& region, const Multiplex& multiplex,
                  const std::function<bool()>& wanted) override;
    bool live() const override { return false; }
    std::unique_ptr<Tuning> tune(const Channel& channel) override;
    Reception reception(const Multiplex& multiplex) const override;
    std::optional<VideoFormat> video(const Channel& channel,
                                     const Multiplex& multiplex) const override;
    std::vector<SoundTrack> tracks(const Channel& channel) const override;
    bool scrambled(const Channel& channel, bool descrambler) const override;
    TeletextView teletext(const Channel& channel, uint16_t number, uint32_t subpage,
                          const TeletextTopics& topics) const override;
    std::vector<stream::TopPage> teletextTop(const Channel& channel) const override;
    std::vector<SubtitleTrack> subtitles(const Channel& channel) const override;
    std::optional<CaptionStreams> captionStreams(const Channel& channel) const override;
    std::vector<std::string> captions(const Channel& channel, uint8_t line21) const override;
    std::vector<Event> events(const Channel& channel, int64_t from, int64_t to,
                              int64_t now) const override;
    std::optional<Event> event(const Channel& channel, uint16_t id, int64_t now) const override;
    std::optional<Event> present(const Channel& channel, int64_t now) const override;
    std::optional<Event> following(const Channel& channel, int64_t now) const override;
    std::vector<TargetRegion> targetRegions() const override;
    std::optional<int64_t> time() const override { return std::nullopt; }
    std::optional<stream::Time> timeTable() const override { return std::nullopt; }
    std::vector<stream::RatingRegion> ratings() const override { return {}; }
    std::vector<stream::Alert> alerts() const override { return {}; }
    std::vector<stream::Application> applications(const Channel&) const override { return {}; }
    std::unique_ptr<PacketSource> packets(const Channel& channel, uint32_t rate) override;
    std::unique_ptr<PacketSource> viewerPackets(const Channel& channel) override;
    void setKey(const Channel& channel, const std::vector<uint8_t>& key) override;

    /** Weakens all frequencies, or one, to a percentage of what they are. */
    void setStrength(uint32_t percent, std::optional<uint32_t> kHz);

  private:
    mutable std::mutex mLock;
    // Guarded by mLock.
    uint32_t mStrength = 100;
    std::map<uint32_t, uint32_t> mStrengths;
};

}  // namespace qeltvd
