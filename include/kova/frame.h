/* frame: what every accessor family stands on. */
#ifndef KOVA_FRAME_H
#define KOVA_FRAME_H

#include <kova/accessors.h>
#include <kova/channel.h>
#include <kova/events.h>
#include <kova/instance.h>
#include <kova/network.h>
#include <kova/text.h>

#endif
