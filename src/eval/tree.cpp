// SPDX-License-Identifier: MIT
#include "eval/tree.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/text_format.h"
#include "eval/lexer.h"

namespace brevant::eval {
namespace {

using Kind = Token::Kind;

struct Binary {
  std::string_view sign;
  Op op;
  int strength;  // the higher binds first
};
constexpr std::array kBinaries{
    Binary{"*", Op::Multiply, 10},     Binary{"/", Op::Divide, 10},
    Binary{"%", Op::Modulo, 10},       Binary{"+", Op::Add, 9},
    Binary{"-", Op::Subtract, 9},      Binary{"<<", Op::ShiftLeft, 8},
    Binary{">>", Op::ShiftRight, 8},   Binary{"<", Op::Less, 7},
    Binary{"<=", Op::LessEqual, 7},    Binary{">", Op::Greater, 7},
    Binary{">=", Op::GreaterEqual, 7}, Binary{"==", Op::Equal, 6},
    Binary{"!=", Op::Unequal, 6},      Binary{"&", Op::BitAnd, 5},
    Binary{"^", Op::BitXor, 4},        Binary{"|", Op::BitOr, 3},
    Binary{"&&", Op::And, 2},          Binary{"||", Op::Or, 1},
};

struct Unary {
  std::string_view sign;
  Op op;
};
constexpr std::array kUnaries{
    Unary{"*", Op::Dereference}, Unary{"&", Op::AddressOf}, Unary{"+", Op::Plus},
    Unary{"-", Op::Minus},       Unary{"!", Op::Not},       Unary{"~", Op::Complement},
};

// Words of which a type's name may consist, besides that of a structure.
constexpr std::array<std::string_view, 13> kTypeWords{
    "unsigned", "signed", "char", "short",    "int",   "long",  "float",
    "_Bool",    "bool",   "void", "volatile", "const", "double"};
constexpr std::array<std::string_view, 3> kTags{"struct", "union", "enum"};
// Qualifiers change nothing of what is shown.
constexpr std::array<std::string_view, 2> kQualifiers{"volatile", "const"};

// What people write is not that deep; a hostile text must not use up the program's stack.
constexpr int kMostDepth = 100;
constexpr std::size_t kMostTokens = 400;

bool IsOneOf(const Token& token, const auto& words) {
  return token.kind == Kind::Name && token.scope.empty() &&
         std::ranges::find(words, token.text) != words.end();
}

class Parser {
 public:
  explicit Parser(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

  Parsed Run() {
    Tree tree = TakeBinary(1);
    if (problem_.empty() && Now().kind != Kind::End) {
      const bool assigns = Now().text == "=" || Now().text == "++" || Now().text == "--";
      Fail(assigns ? "an expression changes nothing: use set" : "unexpected " + Shown(Now()));
    }
    return {std::move(tree), std::move(problem_)};
  }

 private:
  const Token& Now() const { return tokens_[at_]; }
  bool Is(std::string_view sign) const { return Now().kind == Kind::Sign && Now().text == sign; }
  void Skip() {
    if (at_ + 1 < tokens_.size()) ++at_;
  }
  bool Take(std::string_view sign) {
    if (!Is(sign)) return false;
    Skip();
    return true;
  }
  void Fail(std::string problem) {
    if (problem_.empty()) problem_ = std::move(problem);
    at_ = tokens_.size() - 1;
  }
  void Expect(std::string_view sign) {
    if (!Take(sign)) Fail(base::Format("%s is missing before %s", std::string(sign), Shown(Now())));
  }
  static std::string Shown(const Token& token) {
    if (token.kind == Kind::End) return "the end";
    return '"' + (token.kind == Kind::Number ? std::to_string(token.number) : token.text) + '"';
  }

  Tree TakeBinary(int weakest) {
    Tree left = TakeUnary();
    while (problem_.empty()) {
      const auto* const row =
          std::ranges::find_if(kBinaries, [this](const Binary& binary) { return Is(binary.sign); });
      if (row == kBinaries.end() || row->strength < weakest) break;
      Skip();
      Tree right = TakeBinary(row->strength + 1);
      left = Node(row->op, std::move(left), std::move(right));
    }
    return left;
  }

  template <typename... Children>
  static Tree Node(Op op, Children... children) {
    Tree tree{.op = op};
    (tree.children.push_back(std::move(children)), ...);
    return tree;
  }

  Tree TakeUnary() {
    if (++depth_ > kMostDepth) Fail("the expression is nested too deeply");
    Tree tree = problem_.empty() ? TakeUnaryWithin() : Tree();
    --depth_;
    return tree;
  }

  Tree TakeUnaryWithin() {
    const auto* const row =
        std::ranges::find_if(kUnaries, [this](const Unary& unary) { return Is(unary.sign); });
    if (row != kUnaries.end()) {
      Skip();
      return Node(row->op, TakeUnary());
    }
    if (Now().kind == Kind::Name && Now().text == "sizeof") {
      Skip();
      if (auto type = TakeTypeInBrackets()) {
        type->op = Op::SizeOf;
        return *type;
      }
      return Node(Op::SizeOf, TakeUnary());
    }
    if (auto cast = TakeTypeInBrackets()) {
      cast->children.push_back(TakeUnary());
      return *cast;
    }
    return TakePostfix(TakePrimary());
  }

  // "(unsigned char *)".
  std::optional<Tree> TakeTypeInBrackets() {
    if (!Is("(") || !StartsType(tokens_[at_ + 1])) return std::nullopt;
    Skip();
    Tree cast{.op = Op::Cast};
    const auto add = [&cast](const std::string& word) {
      cast.text += (cast.text.empty() ? "" : " ") + word;
    };
    while (StartsType(Now())) {
      const bool tag = IsOneOf(Now(), kTags);
      if (!IsOneOf(Now(), kQualifiers)) add(Now().text);
      Skip();
      if (!tag) continue;
      if (Now().kind != Kind::Name) Fail("a name is missing behind " + cast.text);
      add(Now().text);
      Skip();
    }
    while (Take("*")) ++cast.stars;
    Expect(")");
    return cast;
  }

  static bool StartsType(const Token& token) {
    return IsOneOf(token, kTypeWords) || IsOneOf(token, kTags);
  }

  Tree TakePrimary() {
    const Token token = Now();
    if (Take("(")) {
      Tree tree = TakeBinary(1);
      Expect(")");
      return tree;
    }
    Skip();
    switch (token.kind) {
      case Kind::Number:
        return {.op = Op::Number,
                .number = token.number,
                .is_unsigned = token.is_unsigned,
                .may_be_unsigned = token.may_be_unsigned,
                .is_real = token.is_real,
                .real = token.real};
      case Kind::Name:
        return {.op = Op::Name, .text = token.text, .scope = token.scope};
      case Kind::Register:
        return {.op = Op::Register, .text = token.text};
      case Kind::End:
      case Kind::Sign:
        break;
    }
    Fail(token.kind == Kind::End ? "a name or a number is missing at the end"
                                 : "a name or a number is missing before " + Shown(token));
    return {};
  }

  Tree TakePostfix(Tree tree) {
    while (problem_.empty()) {
      const bool arrow = Is("->");
      if (Take("[")) {
        Tree index = TakeBinary(1);
        Expect("]");
        tree = Node(Op::Index, std::move(tree), std::move(index));
      } else if (Take(".") || Take("->")) {
        // A bit of a register: "PTA.3".
        const bool bit = !arrow && Now().kind == Kind::Number && !Now().is_real;
        if (Now().kind != Kind::Name && !bit) {
          Fail("the name of a member is missing before " + Shown(Now()));
          break;
        }
        tree = Node(arrow ? Op::Arrow : Op::Member, std::move(tree));
        tree.text = bit ? std::to_string(Now().number) : Now().text;
        Skip();
      } else if (Is("(")) {
        Fail("a function cannot be called");
      } else {
        break;
      }
    }
    return tree;
  }

  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  std::string problem_;
  int depth_ = 0;
};

}  // namespace

Parsed Parse(std::string_view text) {
  Tokens tokens = Split(text);
  if (!tokens.problem.empty()) return {{}, std::move(tokens.problem)};
  if (tokens.list.size() > kMostTokens) return {{}, "the expression is too long"};
  return Parser(std::move(tokens.list)).Run();
}

}  // namespace brevant::eval
