#include "document/shape/ShapeReader.h"

#include <cctype>
#include <charconv>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace railwright::document::shape::testing {

namespace {

constexpr std::string_view kSignature = "SIMISA@@@@@@@@@@JINX0s1t______";

struct Fault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// ---- Tokens and blocks ---------------------------------------------------------------------

std::vector<std::string> Tokenize(std::string_view text) {
    std::vector<std::string> tokens;
    size_t i = 0;
    while (i < text.size()) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c <= 32) {
            ++i;
        } else if (c == '(' || c == ')') {
            tokens.emplace_back(1, static_cast<char>(c));
            ++i;
        } else if (c == '"') {
            std::string token;
            ++i;
            while (i < text.size() && text[i] != '"') {
                if (text[i] == '\\' && i + 1 < text.size()) {
                    ++i;
                }
                token += text[i++];
            }
            if (i == text.size()) {
                throw Fault("a quoted name runs to the end of the file");
            }
            ++i;
            tokens.push_back(token);
        } else {
            const size_t start = i;
            while (i < text.size() && static_cast<unsigned char>(text[i]) > 32 && text[i] != '(' &&
                   text[i] != ')' && text[i] != '"') {
                ++i;
            }
            tokens.emplace_back(text.substr(start, i - start));
        }
    }
    return tokens;
}

struct Block;

struct Item {
    std::string token;
    std::shared_ptr<Block> block;  // set for a block
};

struct Block {
    std::string name;
    std::string label;
    std::vector<Item> items;
};

bool IsLabelled(const std::string& name) {
    return name == "matrix" || name == "anim_node" || name == "prim_state";
}

class Parser {
  public:
    explicit Parser(std::vector<std::string> tokens) : tokens_(std::move(tokens)) {}

    std::shared_ptr<Block> Top() {
        if (tokens_.size() < 2 || tokens_[1] != "(") {
            throw Fault("the file does not open with a block");
        }
        auto top = std::make_shared<Block>();
        top->name = tokens_[0];
        at_ = 2;
        ReadItems(*top);
        if (at_ != tokens_.size()) {
            throw Fault("text after the shape block");
        }
        return top;
    }

  private:
    void ReadItems(Block& block) {
        while (true) {
            if (at_ >= tokens_.size()) {
                throw Fault("block " + block.name + " is not closed");
            }
            const std::string& token = tokens_[at_++];
            if (token == ")") {
                return;
            }
            if (token == "(") {
                throw Fault("a bracket without a name in " + block.name);
            }
            auto child = std::make_shared<Block>();
            if (Peek(0) == "(") {
                child->name = token;
                at_ += 1;
            } else if (IsLabelled(token) && Peek(1) == "(") {
                child->name = token;
                child->label = tokens_[at_];
                at_ += 2;
            } else {
                block.items.push_back({token, nullptr});
                continue;
            }
            ReadItems(*child);
            block.items.push_back({{}, child});
        }
    }

    std::string Peek(size_t ahead) const {
        return at_ + ahead < tokens_.size() ? tokens_[at_ + ahead] : std::string();
    }

    std::vector<std::string> tokens_;
    size_t at_ = 0;
};

// Reads a block's items in order, as the simulator's reader does.
class Cursor {
  public:
    explicit Cursor(const Block& block) : block_(block) {}

    const std::string& Value() {
        const Item& item = Next("a value");
        if (item.block) {
            throw Fault(Where() + ": a value expected, block " + item.block->name + " found");
        }
        return item.token;
    }
    int64_t Int() {
        const std::string& text = Value();
        int64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size()) {
            throw Fault(Where() + ": \"" + text + "\" is not a whole number");
        }
        return value;
    }
    float Float() {
        const std::string& text = Value();
        float value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size()) {
            throw Fault(Where() + ": \"" + text + "\" is not a number");
        }
        return value;
    }
    uint32_t Hex() {
        const std::string& text = Value();
        uint32_t value = 0;
        const auto [end, error] =
            std::from_chars(text.data(), text.data() + text.size(), value, 16);
        if (error != std::errc() || end != text.data() + text.size() || text.size() != 8) {
            throw Fault(Where() + ": \"" + text + "\" is not eight hex digits");
        }
        return value;
    }
    const Block& Sub(std::string_view name) {
        const Item& item = Next(std::string(name));
        if (!item.block || item.block->name != name) {
            throw Fault(Where() + ": block " + std::string(name) + " expected, " +
                        (item.block ? "block " + item.block->name : "\"" + item.token + "\"") +
                        " found");
        }
        return *item.block;
    }
    // A block of any of the names.
    const Block& AnySub() {
        const Item& item = Next("a block");
        if (!item.block) {
            throw Fault(Where() + ": a block expected, \"" + item.token + "\" found");
        }
        return *item.block;
    }
    bool AtEnd() const { return at_ == block_.items.size(); }
    void End() const {
        if (!AtEnd()) {
            throw Fault(Where() + ": more than its count or its fields");
        }
    }
    // A count followed by that many blocks of `entry`.
    std::vector<const Block*> List(std::string_view entry) {
        const int64_t count = Int();
        std::vector<const Block*> entries;
        for (int64_t i = 0; i < count; ++i) {
            entries.push_back(&Sub(entry));
        }
        End();
        return entries;
    }
    // A count followed by that many values, `width` numbers each.
    std::vector<int64_t> Ints(size_t width = 1) {
        const int64_t count = Int();
        std::vector<int64_t> values;
        for (int64_t i = 0; i < count * static_cast<int64_t>(width); ++i) {
            values.push_back(Int());
        }
        return values;
    }
    std::string Where() const { return "block " + block_.name; }

  private:
    const Item& Next(const std::string& what) {
        if (at_ >= block_.items.size()) {
            throw Fault(Where() + " ends where " + what + " was expected");
        }
        return block_.items[at_++];
    }

    const Block& block_;
    size_t at_ = 0;
};

void CheckIndex(int64_t index, size_t count, const std::string& what) {
    if (index < 0 || static_cast<size_t>(index) >= count) {
        throw Fault(what + " " + std::to_string(index) + " is out of range (" +
                    std::to_string(count) + ")");
    }
}

std::array<float, 3> ReadVector(const Block& block) {
    Cursor cursor(block);
    std::array<float, 3> v{cursor.Float(), cursor.Float(), cursor.Float()};
    cursor.End();
    return v;
}

// ---- The shape ---------------------------------------------------------------------------

class ShapeWalk {
  public:
    explicit ShapeWalk(ReadShape& shape) : shape_(shape) {}

    void Walk(const Block& top) {
        if (top.name != "shape") {
            throw Fault("the file's block is " + top.name + ", not shape");
        }
        Cursor c(top);
        {
            Cursor header(c.Sub("shape_header"));
            header.Hex();
            header.Hex();
            header.End();
        }
        {
            Cursor volumes(c.Sub("volumes"));
            for (const Block* sphere : volumes.List("vol_sphere")) {
                Cursor s(*sphere);
                ReadVector(s.Sub("vector"));
                shape_.radius = s.Float();
                s.End();
            }
        }
        for (const Block* shader : Cursor(c.Sub("shader_names")).List("named_shader")) {
            Cursor s(*shader);
            shape_.shaders.push_back(s.Value());
            s.End();
        }
        Cursor(c.Sub("texture_filter_names")).List("named_filter_mode");
        for (const Block* point : Cursor(c.Sub("points")).List("point")) {
            points_.push_back(ReadVector(*point));
        }
        shape_.points = points_.size();
        for (const Block* uv : Cursor(c.Sub("uv_points")).List("uv_point")) {
            Cursor u(*uv);
            u.Float();
            u.Float();
            u.End();
            ++shape_.uvPoints;
        }
        for (const Block* normal : Cursor(c.Sub("normals")).List("vector")) {
            ReadVector(*normal);
            ++shape_.normals;
        }
        Cursor(c.Sub("sort_vectors")).List("vector");
        Cursor(c.Sub("colours")).List("colour");
        for (const Block* matrix : Cursor(c.Sub("matrices")).List("matrix")) {
            if (matrix->label.empty()) {
                throw Fault("a matrix without a name");
            }
            Cursor m(*matrix);
            std::array<float, 12> rows{};
            for (float& value : rows) {
                value = m.Float();
            }
            m.End();
            shape_.matrixNames.push_back(matrix->label);
            shape_.matrices.push_back(rows);
        }
        for (const Block* image : Cursor(c.Sub("images")).List("image")) {
            Cursor i(*image);
            shape_.images.push_back(i.Value());
            i.End();
        }
        for (const Block* texture : Cursor(c.Sub("textures")).List("texture")) {
            Cursor t(*texture);
            CheckIndex(t.Int(), shape_.images.size(), "texture image");
            t.Int();
            t.Float();
            if (!t.AtEnd()) {
                t.Hex();
            }
            t.End();
            ++textures_;
        }
        Cursor(c.Sub("light_materials")).List("light_material");
        for (const Block* config : Cursor(c.Sub("light_model_cfgs")).List("light_model_cfg")) {
            Cursor l(*config);
            l.Hex();
            for (const Block* op : Cursor(l.Sub("uv_ops")).List("uv_op_copy")) {
                Cursor o(*op);
                o.Int();
                o.Int();
                o.End();
            }
            l.End();
            ++lightConfigs_;
        }
        for (const Block* state : Cursor(c.Sub("vtx_states")).List("vtx_state")) {
            Cursor v(*state);
            v.Hex();
            const int64_t matrix = v.Int();
            CheckIndex(matrix, shape_.matrices.size(), "vtx_state matrix");
            v.Int();
            CheckIndex(v.Int(), lightConfigs_, "vtx_state light configuration");
            v.Hex();
            v.End();
            vtxMatrix_.push_back(static_cast<int32_t>(matrix));
        }
        for (const Block* state : Cursor(c.Sub("prim_states")).List("prim_state")) {
            Cursor p(*state);
            p.Hex();
            ReadPrimState read;
            read.shader = static_cast<int32_t>(p.Int());
            CheckIndex(read.shader, shape_.shaders.size(), "prim_state shader");
            for (const int64_t texture : Cursor(p.Sub("tex_idxs")).Ints()) {
                CheckIndex(texture, textures_, "prim_state texture");
                read.textures.push_back(static_cast<int32_t>(texture));
            }
            read.zBias = static_cast<int32_t>(p.Int());
            read.vtxState = static_cast<int32_t>(p.Int());
            CheckIndex(read.vtxState, vtxMatrix_.size(), "prim_state vtx_state");
            read.alphaTestMode = static_cast<int32_t>(p.Int());
            CheckIndex(p.Int(), lightConfigs_, "prim_state light configuration");
            p.Int();
            p.End();
            shape_.primStates.push_back(read);
        }
        const auto controls = Cursor(c.Sub("lod_controls")).List("lod_control");
        for (const Block* control : controls) {
            Cursor l(*control);
            l.Sub("distance_levels_header");
            for (const Block* level : Cursor(l.Sub("distance_levels")).List("distance_level")) {
                shape_.levels.push_back(Level(*level));
            }
            l.End();
        }
        if (!c.AtEnd()) {
            Animations(c.Sub("animations"));
        }
        c.End();
    }

  private:
    void CheckHierarchy(const std::vector<int32_t>& hierarchy) const {
        if (hierarchy.size() != shape_.matrices.size()) {
            throw Fault("the hierarchy has " + std::to_string(hierarchy.size()) + " entries for " +
                        std::to_string(shape_.matrices.size()) + " matrices");
        }
        for (size_t m = 0; m < hierarchy.size(); ++m) {
            size_t steps = 0;
            for (int32_t at = static_cast<int32_t>(m); at >= 0;
                 at = hierarchy[static_cast<size_t>(at)]) {
                if (at >= static_cast<int32_t>(hierarchy.size()) || ++steps > hierarchy.size()) {
                    throw Fault("matrix " + std::to_string(m) + " has no way up to a root");
                }
            }
        }
    }

    std::array<float, 3> Place(std::array<float, 3> p, int32_t matrix) const {
        for (int32_t m = matrix; m >= 0; m = shape_.hierarchy[static_cast<size_t>(m)]) {
            const auto& r = shape_.matrices[static_cast<size_t>(m)];
            p = {p[0] * r[0] + p[1] * r[3] + p[2] * r[6] + r[9],
                 p[0] * r[1] + p[1] * r[4] + p[2] * r[7] + r[10],
                 p[0] * r[2] + p[1] * r[5] + p[2] * r[8] + r[11]};
        }
        return p;
    }

    ReadLevel Level(const Block& block) {
        ReadLevel level;
        Cursor c(block);
        {
            Cursor header(c.Sub("distance_level_header"));
            Cursor selection(header.Sub("dlevel_selection"));
            level.distance = selection.Float();
            selection.End();
            std::vector<int32_t> hierarchy;
            for (const int64_t parent : Cursor(header.Sub("hierarchy")).Ints()) {
                hierarchy.push_back(static_cast<int32_t>(parent));
            }
            header.End();
            CheckHierarchy(hierarchy);
            if (!shape_.hierarchy.empty() && shape_.hierarchy != hierarchy) {
                throw Fault("distance levels with different hierarchies");
            }
            shape_.hierarchy = hierarchy;
        }
        for (const Block* sub : Cursor(c.Sub("sub_objects")).List("sub_object")) {
            SubObject(*sub, level);
        }
        c.End();
        return level;
    }

    void SubObject(const Block& block, ReadLevel& level) {
        Cursor c(block);
        {
            Cursor header(c.Sub("sub_object_header"));
            header.Hex();
            header.Int();
            header.Int();
            header.Hex();
            header.Hex();
            Cursor info(header.Sub("geometry_info"));
            for (int i = 0; i < 10; ++i) {
                info.Int();
            }
            for (const Block* node : Cursor(info.Sub("geometry_nodes")).List("geometry_node")) {
                Cursor n(*node);
                for (int i = 0; i < 5; ++i) {
                    n.Int();
                }
                Cursor prims(n.Sub("cullable_prims"));
                prims.Int();
                prims.Int();
                prims.Int();
                prims.End();
                n.End();
            }
            if (Cursor(info.Sub("geometry_node_map")).Ints().size() != shape_.matrices.size()) {
                throw Fault("a geometry_node_map that does not list every matrix");
            }
            info.End();
            for (const int64_t shader : Cursor(header.Sub("subobject_shaders")).Ints()) {
                CheckIndex(shader, shape_.shaders.size(), "sub-object shader");
            }
            Cursor(header.Sub("subobject_light_cfgs")).Ints();
            header.Int();
            header.End();
        }
        struct ReadVertex {
            int64_t point;
        };
        std::vector<ReadVertex> vertices;
        for (const Block* vertex : Cursor(c.Sub("vertices")).List("vertex")) {
            Cursor v(*vertex);
            v.Hex();
            const int64_t point = v.Int();
            CheckIndex(point, shape_.points, "vertex point");
            CheckIndex(v.Int(), shape_.normals, "vertex normal");
            v.Hex();
            v.Hex();
            const std::vector<int64_t> uvs = Cursor(v.Sub("vertex_uvs")).Ints();
            for (const int64_t uv : uvs) {
                CheckIndex(uv, shape_.uvPoints, "vertex uv point");
            }
            if (uvs.empty()) {
                throw Fault("a vertex without a uv point");
            }
            v.End();
            vertices.push_back({point});
        }
        // The vertex sets cover the vertices in order, one run per vertex state.
        std::vector<int32_t> stateOf(vertices.size(), -1);
        uint32_t covered = 0;
        for (const Block* set : Cursor(c.Sub("vertex_sets")).List("vertex_set")) {
            Cursor s(*set);
            const int64_t state = s.Int();
            CheckIndex(state, vtxMatrix_.size(), "vertex_set vtx_state");
            const int64_t start = s.Int();
            const int64_t count = s.Int();
            s.End();
            if (start != covered || count < 0 ||
                start + count > static_cast<int64_t>(vertices.size())) {
                throw Fault("vertex sets that do not run through the vertices in order");
            }
            for (int64_t v = start; v < start + count; ++v) {
                stateOf[static_cast<size_t>(v)] = static_cast<int32_t>(state);
            }
            covered = static_cast<uint32_t>(start + count);
        }
        if (covered != vertices.size()) {
            throw Fault("vertex sets that leave vertices out");
        }

        Cursor primitives(c.Sub("primitives"));
        const int64_t entries = primitives.Int();
        int64_t primState = 0;
        for (int64_t e = 0; e < entries; ++e) {
            const Block& entry = primitives.AnySub();
            Cursor p(entry);
            if (entry.name == "prim_state_idx") {
                primState = p.Int();
                CheckIndex(primState, shape_.primStates.size(), "prim_state_idx");
                p.End();
                continue;
            }
            if (entry.name != "indexed_trilist") {
                throw Fault("primitive of kind " + entry.name);
            }
            const std::vector<int64_t> corners = Cursor(p.Sub("vertex_idxs")).Ints();
            if (corners.size() % 3 != 0) {
                throw Fault("vertex_idxs whose count is not three per triangle");
            }
            const size_t triangles = corners.size() / 3;
            const std::vector<int64_t> normals = Cursor(p.Sub("normal_idxs")).Ints(2);
            if (normals.size() != triangles * 2) {
                throw Fault("normal_idxs not one per triangle");
            }
            for (size_t t = 0; t < triangles; ++t) {
                CheckIndex(normals[2 * t], shape_.normals, "face normal");
            }
            Cursor flags(p.Sub("flags"));
            const int64_t flagCount = flags.Int();
            for (int64_t f = 0; f < flagCount; ++f) {
                flags.Hex();
            }
            flags.End();
            if (static_cast<size_t>(flagCount) != triangles) {
                throw Fault("flags not one per triangle");
            }
            p.End();
            const ReadPrimState& state = shape_.primStates[static_cast<size_t>(primState)];
            const int32_t matrix = vtxMatrix_[static_cast<size_t>(state.vtxState)];
            for (size_t t = 0; t < triangles; ++t) {
                Triangle placed;
                for (size_t k = 0; k < 3; ++k) {
                    const int64_t vertex = corners[3 * t + k];
                    CheckIndex(vertex, vertices.size(), "triangle corner");
                    if (stateOf[static_cast<size_t>(vertex)] != state.vtxState) {
                        throw Fault("a triangle using a vertex of another matrix's vertex set");
                    }
                    placed[k] = Place(
                        points_[static_cast<size_t>(vertices[static_cast<size_t>(vertex)].point)],
                        matrix);
                }
                level.placed.push_back(placed);
            }
            level.triangles += triangles;
            level.drawCalls += 1;
            level.largestTrilist = std::max(level.largestTrilist, triangles);
            level.primStatesUsed.push_back(static_cast<int32_t>(primState));
        }
        primitives.End();
        c.End();
        level.subObjects += 1;
        level.vertices += vertices.size();
        level.largestSubObject = std::max(level.largestSubObject, vertices.size());
    }

    void Animations(const Block& block) {
        shape_.animated = true;
        const auto animations = Cursor(block).List("animation");
        if (animations.size() != 1) {
            throw Fault("not exactly one animation");
        }
        Cursor a(*animations[0]);
        shape_.frameCount = static_cast<int32_t>(a.Int());
        shape_.frameRate = static_cast<int32_t>(a.Int());
        const auto nodes = Cursor(a.Sub("anim_nodes")).List("anim_node");
        a.End();
        if (nodes.size() != shape_.matrices.size()) {
            throw Fault("anim_nodes not one per matrix");
        }
        for (const Block* node : nodes) {
            ReadAnimNode read;
            read.name = node->label;
            Cursor n(*node);
            Cursor controllers(n.Sub("controllers"));
            const int64_t count = controllers.Int();
            for (int64_t k = 0; k < count; ++k) {
                const Block& controller = controllers.AnySub();
                const bool rotation = controller.name == "tcb_rot";
                if (!rotation && controller.name != "linear_pos") {
                    throw Fault("controller of kind " + controller.name);
                }
                for (const Block* key :
                     Cursor(controller).List(rotation ? "slerp_rot" : "linear_key")) {
                    Cursor kc(*key);
                    ReadKey read_key;
                    read_key.frame = static_cast<int32_t>(kc.Int());
                    for (int i = 0; i < (rotation ? 4 : 3); ++i) {
                        read_key.value[static_cast<size_t>(i)] = kc.Float();
                    }
                    kc.End();
                    (rotation ? read.rotations : read.positions).push_back(read_key);
                }
            }
            controllers.End();
            n.End();
            shape_.animNodes.push_back(read);
        }
    }

    ReadShape& shape_;
    std::vector<std::array<float, 3>> points_;
    size_t textures_ = 0;
    size_t lightConfigs_ = 0;
    std::vector<int32_t> vtxMatrix_;
};

std::string Decode(const std::string& bytes) {
    if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF &&
        static_cast<unsigned char>(bytes[1]) == 0xFE) {
        std::string text;
        for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
            const unsigned code = static_cast<unsigned char>(bytes[i]) |
                                  static_cast<unsigned>(static_cast<unsigned char>(bytes[i + 1]))
                                      << 8;
            text += code < 0x80 ? static_cast<char>(code) : '?';
        }
        return text;
    }
    return bytes;
}

}  // namespace

ReadShape ReadShapeFile(const std::string& bytes) {
    ReadShape shape;
    try {
        const std::string text = Decode(bytes);
        if (text.compare(0, kSignature.size(), kSignature) != 0 ||
            text.compare(kSignature.size(), 2, "\r\n") != 0) {
            throw Fault("the signature line is missing or not ended by CR LF");
        }
        Parser parser(Tokenize(std::string_view(text).substr(kSignature.size())));
        ShapeWalk(shape).Walk(*parser.Top());
    } catch (const Fault& fault) {
        shape.error = fault.what();
    }
    return shape;
}

}  // namespace railwright::document::shape::testing
