/* libkova: the device side of a TR-069 data model. This header brings all families; each has one of its own. */
#ifndef KOVA_H
#define KOVA_H

#define KOVA_VERSION "1.1.0"
#define KOVA_VERSION_NUMBER 10100 /* 10000 * major + 100 * minor + patch */

#include <kova/accounts.h>
#include <kova/diagnostics.h>
#include <kova/frame.h>
#include <kova/lan.h>
#include <kova/management.h>
#include <kova/radio.h>
#include <kova/sas.h>
#include <kova/security.h>
#include <kova/time.h>
#include <kova/transaction.h>
#include <kova/voice.h>
#include <kova/wan.h>

#endif
