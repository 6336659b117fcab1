#pragma once

#include "base/brand.h"
#include "base/displayformats.h"
#include "base/setting.h"
#include "base/windowsettings.h"
#include "link/connection.h"
#include "link/displays.h"
#include "link/instrumentstate.h"
#include "link/interface.h"
#include "link/livereading.h"
#include "link/sci.h"

namespace spectrane {

/// What the link needs of its surroundings: line, time, message loop, settings, and whom it tells.
struct LinkSurroundings {
  PortList& Ports;
  Clock& Time;
  MessageLoop& Loop;
  Exclusion& Turn;
  Setting& Settings;
  MainDisplay& Display;
  Messages& Boxes;
  const Brand& BrandOfBuild;
};

/// The whole instrument link, put together: one per process. The surroundings must outlive it.
class InstrumentLink {
 public:
  explicit InstrumentLink(const LinkSurroundings& around)
      : Time(around.Time),
        Loop(around.Loop),
        Transport(around.Ports, around.Time, around.Loop, around.Turn),
        Instrument(Transport, State, around.Settings),
        Live(Transport, Instrument, State, Formats, around.Display),
        Connect(Instrument, State, Live, around.Display, around.Boxes, around.BrandOfBuild) {
    State.GainCount = around.BrandOfBuild.GainCount;
  }
  InstrumentLink(const InstrumentLink&) = delete;
  InstrumentLink& operator=(const InstrumentLink&) = delete;

  /// Takes over what the settings say of the port search, the sampler and the display formats after a start.
  void Apply(const WindowSettings& settings) {
    State.PortSearchMode = settings.PortSearchMode;
    State.SamplerZeroPosition = settings.SamplerZeroPosition;
    State.SamplerPositions = settings.SamplerPositions;
    Formats = DisplayFormats::AtStart(settings.PrecisionMode);
  }

  /// By which all waiting goes.
  const Clock& Time;
  MessageLoop& Loop;
  InstrumentState State;
  DisplayFormats Formats;
  SCI Transport;
  Interface Instrument;
  LiveReading Live;
  Connection Connect;
};

}  // namespace spectrane
