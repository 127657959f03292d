// `railwright inspect`: what the model holds, as text or as one JSON object.
#include "cli/Command.h"
#include "document/Document.h"

namespace railwright::cli {
namespace {

using Json = nlohmann::ordered_json;

// "MSTS=Main, Trainz=-" for the fields that have a value.
std::string FieldList(const Json& fields) {
    std::string text;
    for (const auto& [name, value] : fields.items()) {
        if (value.is_string() && !value.get<std::string>().empty()) {
            text += (text.empty() ? "" : ", ") + name + "=" + value.get<std::string>();
        }
    }
    return text;
}

void PrintText(const Json& inspection, std::ostream& out) {
    const Json& groups = inspection["groups"];
    std::vector<int> depth(groups.size(), 0);
    out << "Groups (" << groups.size() << "):\n";
    for (const Json& group : groups) {
        const int index = group["index"].get<int>();
        const int parent = group["parent"].get<int>();
        depth[static_cast<size_t>(index)] = parent < 0 ? 0 : depth[static_cast<size_t>(parent)] + 1;
        out << "  " << std::string(static_cast<size_t>(depth[static_cast<size_t>(index)]) * 2, ' ')
            << index << " " << group["name"].get<std::string>();
        if (const int shapes = group["shapes"].get<int>(); shapes > 0) {
            out << "  shapes " << shapes;
        }
        if (const int keys = group["keys"].get<int>(); keys > 0) {
            out << "  keys " << keys;
        }
        if (const std::string fields = FieldList(group["fields"]); !fields.empty()) {
            out << "  [" << fields << "]";
        }
        out << '\n';
    }
    out << "Materials (" << inspection["materials"].size() << "):\n";
    for (const Json& material : inspection["materials"]) {
        out << "  " << material["holder"].get<std::string>() << ": "
            << (material["texture"].get<std::string>().empty()
                    ? std::string("(no texture)")
                    : material["texture"].get<std::string>());
        if (const std::string fields = FieldList(material["fields"]); !fields.empty()) {
            out << "  [" << fields << "]";
        }
        out << '\n';
    }
    out << "Group fields: " << inspection["groupFields"].dump() << '\n';
    out << "Material fields: " << inspection["materialFields"].dump() << '\n';
    const Json& settings = inspection["settings"];
    out << "Settings: singles " << settings["singles"].dump() << "\n          longs "
        << settings["longs"].dump() << "\n          string " << settings["string"].dump() << '\n';
}

}  // namespace

int Inspect(const std::string& model, bool json, Console console) {
    document::LoadResult loaded = document::Document::Load(model);
    if (!loaded.document) {
        console.err << "railwright: " << loaded.error << '\n';
        return kExitUsage;
    }
    const Json inspection = loaded.document->Inspect();
    if (json) {
        console.out << inspection.dump(2) << '\n';
    } else {
        PrintText(inspection, console.out);
    }
    return kExitSuccess;
}

}  // namespace railwright::cli
