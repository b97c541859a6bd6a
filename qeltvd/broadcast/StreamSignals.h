#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Signals.h"
#include "StreamEvents.h"
#include "StreamMultiplex.h"

namespace qeltvd {

/** What a transport stream broadcasts. */
class StreamSignals : public Signals {
  public:
    /** Services without a broadcast number are numbered from here on. */
    static constexpr uint32_t kFirstUnnumbered = 800;

    /** @param language the one that the viewer prefers, on any thread; null for none */
    explicit StreamSignals(std::shared_ptr<StreamMultiplex> multiplex,
                           std::function<std::string()> language = nullptr)
            : mMultiplex(std::move(multiplex)), mLanguage(std::move(language)) {}

    Survey survey(const Region& region, const Multiplex& multiplex,
                  const std::function<bool()>& wanted) override;
    bool live() const override { return mMultiplex->live(); }
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
    std::unique_ptr<PacketSource> packets(const Channel& channel, uint32_t rate) override;
    std::unique_ptr<PacketSource> viewerPackets(const Channel& channel) override;
    void setKey(const Channel& channel, const std::vector<uint8_t>& key) override;
    std::vector<TargetRegion> targetRegions() const override { return {}; }
    std::optional<int64_t> time() const override;
    std::optional<stream::Time> timeTable() const override;
    std::vector<stream::RatingRegion> ratings() const override;
    std::vector<stream::Alert> alerts() const override;
    std::vector<stream::Application> applications(const Channel& channel) const override;

    StreamMultiplex& multiplex() { return *mMultiplex; }

  private:
    /** In order of the begins; one without an end lasts until the next. */
    std::vector<Event> all(const Channel& channel) const;
    bool hasTeletext(const Channel& channel) const;
    EventContext contextOf(const Channel& channel) const;
    /** Bit rate of a PID; 0 if it is unknown. */
    uint32_t kbitPerSecond(uint16_t pid) const;

    const std::shared_ptr<StreamMultiplex> mMultiplex;
    const std::function<std::string()> mLanguage;
};

}  // namespace qeltvd
