#pragma once

#include "Event.h"
#include "LineUp.h"
#include "StreamStructs.h"

namespace qeltvd {

/** What only the multiplex knows of an event. */
struct EventContext {
    /** ATSC has one text for an event beside its title. */
    bool atsc = false;
    /** What references of the service begin with. */
    std::string authority = {};
    /** The service is in high definition, which events without components do not say. */
    bool high = false;
    /** Of the texts that the viewer prefers, three letters; empty for the first ones. */
    std::string language = {};
};

/** An event that is received as the guide has it. */
Event eventOf(const Channel& channel, const stream::Event& event, const EventContext& context);

}  // namespace qeltvd
