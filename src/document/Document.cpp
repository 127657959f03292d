#include "document/Document.h"

#include <map>
#include <unordered_map>

#include "document/DocumentState.h"
#include "document/Files.h"
#include "document/GltfContainer.h"
#include "document/Uri.h"
#include "support/Utf8Paths.h"

namespace railwright::document {

namespace {

using host::scene::Node;

// Rewrites the relative URIs of buffers and images so that they name, from `to`, the files
// they named from `from`.
std::string RebaseUris(Json& json, const std::filesystem::path& from,
                       const std::filesystem::path& to) {
    for (const char* kind : {"buffers", "images"}) {
        const auto list = json.find(kind);
        if (list == json.end() || !list->is_array()) {
            continue;
        }
        for (Json& item : *list) {
            const auto uri = item.find("uri");
            if (uri == item.end() || !uri->is_string() ||
                !IsRelativeReference(uri->get<std::string>())) {
                continue;
            }
            const std::optional<std::string> rebased =
                RebaseReference(uri->get<std::string>(), from, to);
            if (!rebased) {
                return "\"" + uri->get<std::string>() + "\" cannot be named from the new folder.";
            }
            *uri = *rebased;
        }
    }
    return {};
}

std::map<int, FieldValues> MaterialFields(const DocumentState& state) {
    std::map<int, FieldValues> fields;
    for (const MaterialRecord& record : state.materials) {
        fields[record.index] = record.material->CustomFields();
    }
    return fields;
}

// What a file just saved must read back as: the same groups in the same order under the same
// parents with the same names, fields and number of keys (the root group's keys are not kept),
// the same material fields and settings.
std::string CompareReadBack(const DocumentState& expected, const DocumentState& actual) {
    const host::scene::Model& want = *expected.host.model;
    const host::scene::Model& got = *actual.host.model;
    const auto& wantGroups = want.GroupOrder();
    const auto& gotGroups = got.GroupOrder();
    if (wantGroups.size() != gotGroups.size()) {
        return "it reads back with " + std::to_string(gotGroups.size()) + " groups instead of " +
               std::to_string(wantGroups.size()) + ".";
    }
    std::unordered_map<const Node*, size_t> wantIndex;
    std::unordered_map<const Node*, size_t> gotIndex;
    for (size_t i = 0; i < wantGroups.size(); ++i) {
        wantIndex[wantGroups[i].get()] = i;
        gotIndex[gotGroups[i].get()] = i;
    }
    const auto parentIndex = [](const Node& group, const auto& index) -> long long {
        const std::shared_ptr<Node> parent = group.ParentNode();
        return parent ? static_cast<long long>(index.at(parent.get())) : -1;
    };
    for (size_t i = 0; i < wantGroups.size(); ++i) {
        const Node& a = *wantGroups[i];
        const Node& b = *gotGroups[i];
        if (a.NameValue() != b.NameValue() ||
            parentIndex(a, wantIndex) != parentIndex(b, gotIndex) ||
            a.CustomFields() != b.CustomFields() || (i > 0 && a.Keys().size() != b.Keys().size())) {
            return "group " + std::to_string(i) + " \"" + a.NameValue() +
                   "\" reads back differently.";
        }
    }
    if (want.GroupFields().Names() != got.GroupFields().Names() ||
        want.MaterialFields().Names() != got.MaterialFields().Names()) {
        return "the custom field names read back differently.";
    }
    if (MaterialFields(expected) != MaterialFields(actual)) {
        return "the fields of the materials read back differently.";
    }
    if (expected.data.singles != actual.data.singles || expected.data.longs != actual.data.longs ||
        expected.data.text != actual.data.text) {
        return "the settings values read back differently.";
    }
    return {};
}

bool SameFolder(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code error;
    const bool same = std::filesystem::equivalent(a, b, error);
    return error ? a.lexically_normal() == b.lexically_normal() : same;
}

}  // namespace

Document::Document(std::unique_ptr<DocumentState> state) : state_(std::move(state)) {}

Document::~Document() = default;

LoadResult Document::Load(const std::string& path) {
    auto state = std::make_unique<DocumentState>();
    std::string fault;
    try {
        fault = LoadState(support::PathFromUtf8(path), *state);
    } catch (const std::bad_alloc&) {
        fault = "it needs more memory than there is.";
    } catch (const std::exception& exception) {
        fault = std::string("it cannot be read: ") + exception.what();
    }
    if (!fault.empty()) {
        return {nullptr, path + ": " + fault};
    }
    return {std::unique_ptr<Document>(new Document(std::move(state))), {}};
}

host::scene::Scene& Document::Scene() {
    return state_->host;
}
std::vector<float>& Document::UserDataSingles() {
    return state_->data.singles;
}
std::vector<int32_t>& Document::UserDataLongs() {
    return state_->data.longs;
}
std::string& Document::UserDataString() {
    return state_->data.text;
}
const std::vector<std::string>& Document::Notices() const {
    return state_->notices;
}
std::vector<std::string> Document::ReferencedFiles() const {
    std::vector<std::string> files{support::Utf8FromPath(state_->file.filename())};
    for (const char* list : {"buffers", "images"}) {
        const auto found = state_->json.find(list);
        if (found == state_->json.end() || !found->is_array()) {
            continue;
        }
        for (const Json& item : *found) {
            if (item.is_object() && item.contains("uri") && item["uri"].is_string() &&
                IsRelativeReference(item["uri"].get<std::string>())) {
                files.push_back(PercentDecode(item["uri"].get<std::string>()));
            }
        }
    }
    return files;
}

std::string Document::Path() const {
    return support::Utf8FromPath(state_->file);
}
bool Document::IsBinary() const {
    return state_->form == FileForm::Binary;
}

SaveResult Document::Save() {
    return SaveAs(Path());
}

SaveResult Document::SaveAs(const std::string& path) {
    const auto failed = [&path](const std::string& fault) {
        return SaveResult{path + ": not saved: " + fault};
    };
    try {
        std::error_code error;
        const std::filesystem::path target =
            std::filesystem::absolute(support::PathFromUtf8(path), error);
        if (error) {
            return failed("its path cannot be made absolute.");
        }
        Json json;
        std::optional<std::string> bin;
        if (std::string fault = ApplyChanges(*state_, json, bin); !fault.empty()) {
            return failed(fault);
        }
        if (!SameFolder(target.parent_path(), state_->folder)) {
            if (std::string fault = RebaseUris(json, state_->folder, target.parent_path());
                !fault.empty()) {
                return failed(fault);
            }
        }
        std::string bytes;
        try {
            bytes = json.dump(state_->form == FileForm::Text ? 2 : -1);
        } catch (const Json::type_error&) {
            return failed("a name or field value is not valid UTF-8 text.");
        }
        if (state_->form == FileForm::Binary) {
            std::optional<std::string> file =
                JoinGlb(bytes, bin ? &*bin : nullptr, state_->otherChunks);
            if (!file) {
                return failed("it would be larger than the 4 GiB a .glb file can hold.");
            }
            bytes = std::move(*file);
        } else {
            bytes += '\n';
        }
        const std::string fault =
            WriteReplacing(target, bytes, [this](const std::filesystem::path& written) {
                DocumentState readBack;
                if (std::string readFault = LoadState(written, readBack); !readFault.empty()) {
                    return "it does not read back: " + readFault;
                }
                return CompareReadBack(*state_, readBack);
            });
        return fault.empty() ? SaveResult{} : failed(fault);
    } catch (const std::bad_alloc&) {
        return failed("it needs more memory than there is.");
    } catch (const std::exception& exception) {
        return failed(exception.what());
    }
}

TexturePreparation Document::PrepareTextures(const std::string& cacheFolder) {
    return document::PrepareTextures(*state_, support::PathFromUtf8(cacheFolder));
}

}  // namespace railwright::document
