#include "comtrade/ComtradeExporter.h"

#include "comtrade/CfgWriter.h"
#include "comtrade/ComtradeError.h"
#include "comtrade/DatWriter.h"
#include "comtrade/RowBuilder.h"
#include "platform/parser/ParseError.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <unistd.h>

namespace TavComtrade {

using Kind = ComtradeError::Kind;

const char* alignmentName(Alignment alignment) {
    switch (alignment) {
    case Alignment::OneStream:
        return "one SV stream";
    case Alignment::SampleCounter:
        return "by smpCnt";
    case Alignment::NearestTime:
        return "by nearest time";
    case Alignment::GooseOnly:
        return "GOOSE frames";
    }
    return "";
}

namespace {

// A 32-bit time stamp in whole microseconds covers 71 minutes; longer
// records count in tens, hundreds ... of microseconds.
double timeUnitFor(std::int64_t spanNs) {
    double unit = 1.0;
    while (static_cast<double>(spanNs) / 1000.0 / unit > 4.0e9)
        unit *= 10.0;
    return unit;
}

ComtradeError cannotWrite(const std::string& path) {
    return ComtradeError(Kind::CannotWrite, "cannot write " + path + ": " + std::strerror(errno),
                         path);
}

// Removes the temporary files unless they were renamed.
struct PartFiles {
    std::string dat;
    std::string cfg;
    bool kept = false;
    ~PartFiles() {
        if (!kept) {
            std::remove(dat.c_str());
            std::remove(cfg.c_str());
        }
    }
};

ProgressSink share(const ProgressSink& progress, double from, double width) {
    if (!progress)
        return {};
    return [=](double done) { return progress(from + done * width); };
}

ExportResult writeFiles(const std::string& base, const ExportRequest& request,
                        const ProgressSink& progress) {
    RowBuilder builder(request);
    const Survey survey = builder.survey(share(progress, 0.0, 0.5));
    const DataEncoding encoding{request.revision, request.format};
    std::vector<ChannelScale> scales;
    for (std::size_t c = 0; c < request.analog.size(); ++c)
        scales.push_back(ChannelScale::choose(survey.min[c], survey.max[c], request.analog[c].ratio,
                                              encoding.limit()));
    const double timeUnit = timeUnitFor(survey.lastNs - survey.firstNs);

    ExportResult result{base + ".cfg", base + ".dat", 0, Alignment::OneStream, 0.0};
    const std::string tag = ".part" + std::to_string(::getpid());
    PartFiles parts{result.datPath + tag, result.cfgPath + tag};
    {
        std::ofstream dat(parts.dat, std::ios::binary | std::ios::trunc);
        if (!dat)
            throw cannotWrite(result.datPath);
        DatWriter writer(dat, encoding, scales, request.digital.size(), timeUnit, survey.firstNs);
        builder.build([&](const Row& row) { writer.write(row); }, share(progress, 0.5, 0.5));
        dat.flush();
        if (!dat)
            throw cannotWrite(result.datPath);
        result.rows = writer.rows();
    }
    result.alignment = builder.alignment();
    result.sampleRate = builder.sampleRate();
    {
        std::ofstream cfg(parts.cfg, std::ios::binary | std::ios::trunc);
        if (!cfg)
            throw cannotWrite(result.cfgPath);
        CfgContent content;
        content.encoding = encoding;
        content.stationName = request.stationName;
        content.deviceId = request.deviceId;
        content.analog = &request.analog;
        content.scales = &scales;
        content.digital = &request.digital;
        content.lineFrequency = builder.lineFrequency();
        content.sampleRate = result.sampleRate;
        content.rows = result.rows;
        content.firstNs = survey.firstNs;
        content.triggerNs = request.trigger ? toNanoseconds(*request.trigger) : survey.firstNs;
        content.timeUnitUs = timeUnit;
        writeCfg(cfg, content);
        cfg.flush();
        if (!cfg)
            throw cannotWrite(result.cfgPath);
    }
    if (std::rename(parts.dat.c_str(), result.datPath.c_str()) != 0)
        throw cannotWrite(result.datPath);
    if (std::rename(parts.cfg.c_str(), result.cfgPath.c_str()) != 0) {
        const ComtradeError error = cannotWrite(result.cfgPath);
        std::remove(result.datPath.c_str());
        throw error;
    }
    parts.kept = true;
    return result;
}

} // namespace

ExportResult ComtradeExporter::write(const std::string& base, const ExportRequest& request,
                                     const ProgressSink& progress) {
    try {
        return writeFiles(base, request, progress);
    } catch (const TavIec61850Parser::ParseError& e) {
        throw ComtradeError(Kind::Unreadable, e.what(), e.path());
    } catch (const TavIec61850Parser::MalformedFrame& e) {
        throw ComtradeError(Kind::Unreadable,
                            std::string("a frame no longer decodes: ") + e.what());
    }
}

std::string ComtradeExporter::basePath(const std::string& path) {
    for (const char* ending : {".cfg", ".CFG", ".dat", ".DAT"}) {
        const std::size_t n = std::strlen(ending);
        if (path.size() > n && path.compare(path.size() - n, n, ending) == 0)
            return path.substr(0, path.size() - n);
    }
    return path;
}

} // namespace TavComtrade
