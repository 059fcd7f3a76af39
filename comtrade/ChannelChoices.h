#pragma once

#include "comtrade/ExportRequest.h"
#include "model/GooseChannel.h"
#include "model/SvChannel.h"

#include <vector>

namespace TavComtrade {

// A channel of the stream tree as the export takes it: the name, unit, phase
// and scale the stream list and the oscillograph show.
AnalogChoice analogChoice(const TavNA::SvChannel& channel, const TavIec61850Parser::Sv& stream);
DigitalChoice digitalChoice(const TavNA::GooseChannel& channel,
                            const TavIec61850Parser::Goose& stream);

// Every channel of an SV stream, named and scaled as the stream list does.
std::vector<AnalogChoice> allChannels(const TavIec61850Parser::Sv& stream);
// The boolean entries of a GOOSE stream's first frame. Throws ParseError
// when the frame cannot be read again.
std::vector<DigitalChoice> booleanChannels(const TavIec61850Parser::Goose& stream);

// The file names (without folder and ending) and the stream identifiers,
// each joined by '+', for the record's station and device fields.
std::string stationNameOf(const std::vector<std::string>& paths);
std::string deviceIdOf(const ExportRequest& request);

} // namespace TavComtrade
