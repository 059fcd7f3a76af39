#include "platform/parser/RangeMerge.h"

#include <algorithm>
#include <utility>

namespace TavIec61850Parser {

namespace {

void appendPackages(const PackageFile& to, const PackageFile& from) {
    if (from.packages.empty())
        return;
    if (!to.packages.empty() && from.packages.front().time < to.packages.back().time)
        to.timeOrdered = false;
    to.timeOrdered = to.timeOrdered && from.timeOrdered;
    to.earliest = std::min(to.earliest, from.earliest);
    to.latest = std::max(to.latest, from.latest);
    to.packages.insert(to.packages.end(), from.packages.begin(), from.packages.end());
}

// The range's own file of the stream: it has only the one being parsed.
const PackageFile* onlyFile(const PackageFiles& files) {
    return files.empty() ? nullptr : &*files.begin();
}

} // namespace

const PackageFile& RangeMerge::fileOf(PackageFiles& files) {
    auto [it, added] = files.emplace(path_);
    if (added)
        touched_.push_back(&*it);
    return *it;
}

// The stream is taken out of the range's database whole, so that its texts
// move instead of being copied; its packages are appended to the database's.
void RangeMerge::mergeSv(Db& range, const Sv& from) {
    auto node = range.svProto.svs.extract(from);
    PackageFiles files = std::move(node.value().files);
    node.value().files.clear();
    std::vector<std::string> svIds = std::move(node.value().asduSvIds);
    node.value().asduSvIds.clear();
    auto result = db_.svProto.svs.insert(std::move(node));
    const Sv& stream = *result.position;
    for (std::string& id : svIds)
        if (std::find(stream.asduSvIds.begin(), stream.asduSvIds.end(), id) ==
            stream.asduSvIds.end())
            stream.asduSvIds.push_back(std::move(id));
    if (const PackageFile* f = onlyFile(files))
        appendPackages(fileOf(stream.files), *f);
}

void RangeMerge::mergeGoose(Db& range, const Goose& from) {
    auto node = range.gooseProto.gooses.extract(from);
    PackageFiles files = std::move(node.value().files);
    node.value().files.clear();
    auto result = db_.gooseProto.gooses.insert(std::move(node));
    if (const PackageFile* f = onlyFile(files))
        appendPackages(fileOf(result.position->files), *f);
}

void RangeMerge::add(Db& range, const std::vector<StreamIndex::Touched>& touched) {
    for (const StreamIndex::Touched& t : touched) {
        if (t.sv)
            mergeSv(range, *t.sv);
        else if (t.goose)
            mergeGoose(range, *t.goose);
    }
}

void RangeMerge::finish() {
    for (const PackageFile* f : touched_)
        f->packages.shrink_to_fit();
}

} // namespace TavIec61850Parser
