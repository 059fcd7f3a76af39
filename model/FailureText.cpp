#include "model/FailureText.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <utility>

namespace TavNA::FailureText {

namespace {

// Reasons the parser gives, by their fixed beginning; what follows the
// beginning (a byte offset, the system's error text) is kept as it is.
constexpr std::array<std::pair<const char*, const char*>, 21> kReasons{{
    {"truncated", "файл обрывается"},
    {"empty file", "файл пуст"},
    {"not a pcap or pcapng file", "это не файл захвата pcap или pcapng"},
    {"cannot open: ", "не удаётся открыть: "},
    {"cannot read: ", "ошибка чтения: "},
    {"cannot map: ", "ошибка чтения: "},
    {"not a regular file", "это не обычный файл"},
    {"the file is gone", "файла больше нет"},
    {"the file has changed since it was parsed", "файл изменился после открытия"},
    {"corrupt section header", "повреждён заголовок секции"},
    {"corrupt interface block", "повреждён блок интерфейса"},
    {"corrupt block header", "повреждён заголовок блока"},
    {"corrupt block length", "повреждена длина блока"},
    {"corrupt packet block", "повреждён блок кадра"},
    {"corrupt record header", "повреждён заголовок записи"},
    {"unsupported time resolution", "неподдерживаемая точность времени"},
    {"corrupt compressed data", "повреждены сжатые данные"},
    {"compressed data cut short", "сжатые данные обрываются"},
    {"cannot write the inflated copy: ", "не удаётся записать распакованную копию: "},
    {"cannot keep the inflated copy: ", "не удаётся сохранить распакованную копию: "},
    {"cannot start inflating", "не удаётся начать распаковку"},
}};

std::string translateTail(std::string tail) {
    const std::string at = " at byte ";
    if (tail.rfind(at, 0) == 0)
        return " на байте " + tail.substr(at.size());
    return tail;
}

std::string utc(TavIec61850Parser::Timest t) {
    const std::time_t seconds = t.seconds;
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%06u", parts.tm_year + 1900,
                  parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                  t.nanoseconds / 1000);
    return text;
}

} // namespace

std::string reason(const std::string& parserReason) {
    for (const auto& [english, russian] : kReasons) {
        const std::string prefix = english;
        if (parserReason.rfind(prefix, 0) == 0)
            return russian + translateTail(parserReason.substr(prefix.size()));
    }
    return parserReason;
}

std::string unreadable(const std::string& path, const std::string& parserReason) {
    return "Не удалось прочитать файл " + path + ": " + reason(parserReason) + ".";
}

std::string readInPart(const std::string& path, const std::string& parserReason,
                       std::uint64_t frames, TavIec61850Parser::Timest first,
                       TavIec61850Parser::Timest last) {
    return "Файл " + path + " прочитан не полностью: " + reason(parserReason) +
           ". Прочитано кадров SV и GOOSE: " + std::to_string(frames) + ", с " + utc(first) +
           " по " + utc(last) + " UTC.";
}

std::string unreadableForDrawing(const std::string& path, const std::string& parserReason) {
    return "Кадры файла " + path + " не читаются для осциллограммы: " + reason(parserReason) +
           ". Откройте файл заново.";
}

} // namespace TavNA::FailureText
