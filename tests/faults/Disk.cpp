#include "Disk.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace tavrel::testing {

namespace {

constexpr std::size_t kSector = 512;

std::string FolderOf(const std::string& path) {
    return std::filesystem::path(path).parent_path().string();
}

bool IsKept(Unsynced fate, std::mt19937& random) {
    return fate == Unsynced::Kept || (fate == Unsynced::Some && random() % 2 == 0);
}

}  // namespace

std::vector<RecordedCall> ReadRecord(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::vector<RecordedCall> calls;
    RecordedCall call;
    for (std::size_t length = 0; in >> call.name >> call.number >> call.position >> length;) {
        in.get();
        call.bytes.resize(length);
        in.read(call.bytes.data(), static_cast<std::streamsize>(length));
        calls.push_back(call);
    }
    return calls;
}

Disk::Disk(std::string root, const FolderContent& content) : root_(std::move(root)) {
    nodes_.push_back({.folder = true, .path = FolderOf(root_)});
    lasting_[nodes_.back().path] = 0;
    for (const auto& [name, bytes] : content) {
        for (std::string folder = FolderOf(root_ + name); !lasting_.contains(folder);
             folder = FolderOf(folder)) {
            lasting_[folder] = nodes_.size();
            nodes_.push_back({.folder = true, .path = folder});
        }
        lasting_[root_ + name] = nodes_.size();
        nodes_.push_back({.bytes = bytes});
    }
    present_ = lasting_;
}

void Disk::Apply(const RecordedCall& call) {
    if (call.name == "open") {
        Open(call.number, call.bytes);
    } else if (call.name == "write" || call.name == "truncate") {
        nodes_[open_.at(call.number)].writes.push_back({call.position, call.bytes, call.name == "truncate"});
    } else if (call.name == "sync") {
        Sync(nodes_[open_.at(call.number)]);
    } else if (call.name == "unlink") {
        Change({.from = call.bytes, .to = {}});
    } else if (call.name == "from") {
        from_ = call.bytes;
    } else if (call.name == "to") {
        Change({.from = from_, .to = call.bytes, .node = present_.at(from_)});
    } else if (call.name == "mkdir") {
        nodes_.push_back({.folder = true, .path = call.bytes});
        Change({.from = {}, .to = call.bytes, .node = nodes_.size() - 1});
    } else {
        throw std::runtime_error("unknown call: " + call.name);
    }
}

void Disk::Open(int descriptor, const std::string& path) {
    const std::string name = path.ends_with('/') ? FolderOf(path) : path;
    if (!present_.contains(name)) {
        nodes_.emplace_back();
        Change({.from = {}, .to = name, .node = nodes_.size() - 1});
    }
    open_[descriptor] = present_.at(name);
}

void Disk::Change(const Renaming& renaming) {
    Carry(present_, renaming);
    renamings_.push_back(renaming);
}

void Disk::Carry(Names& names, const Renaming& renaming) {
    names.erase(renaming.from);
    if (!renaming.to.empty()) {
        names[renaming.to] = renaming.node;
    }
}

void Disk::Carry(std::string& bytes, const Write& write) {
    const auto position = static_cast<std::size_t>(write.position);
    if (write.truncates || position + write.bytes.size() > bytes.size()) {
        bytes.resize(position + write.bytes.size());
    }
    bytes.replace(position, write.bytes.size(), write.bytes);
}

void Disk::Sync(Node& node) {
    for (const Write& write : node.writes) {
        Carry(node.bytes, write);
    }
    node.writes.clear();
    if (node.folder) {
        std::erase_if(renamings_, [&](const Renaming& renaming) {
            const bool here = FolderOf(renaming.to.empty() ? renaming.from : renaming.to) == node.path;
            if (here) {
                Carry(lasting_, renaming);
            }
            return here;
        });
    }
}

FolderContent Disk::AfterPowerLoss(Unsynced data, Unsynced names, std::mt19937& random) const {
    Names left = lasting_;
    for (const Renaming& renaming : renamings_) {
        if (IsKept(names, random)) {
            Carry(left, renaming);
        }
    }
    FolderContent content;
    for (const auto& [path, number] : left) {
        const Node& node = nodes_[number];
        if (node.folder || !left.contains(FolderOf(path))) {
            continue;
        }
        std::string& bytes = content[path.substr(root_.size())] = node.bytes;
        for (Write write : node.writes) {
            if (data == Unsynced::Some && random() % 4 == 0) {
                write.bytes.resize(write.bytes.size() / 2 / kSector * kSector);  // the beginning alone
            }
            if (IsKept(data, random)) {
                Carry(bytes, write);
            }
        }
    }
    return content;
}

}  // namespace tavrel::testing
