#pragma once

#include "Scene.h"
#include "Television.h"

namespace screen {

/** What a television shows on top of its picture: banner, volume, messages, teletext. */
Scene sceneOf(const Shown& shown);

}  // namespace screen
