#pragma once

/// @file
/// Classes of persistent objects for the tests of archives. Each test program that includes this is one source.

#include "foundation/archive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

// A node of a graph; counts its living objects.
class Node : public virtual gxPersistent, public virtual gxRepBase
{
 public:
  explicit Node(long id = 0) : id_(id) { ++alive; }
  Node(Node const &n) : gxPersistent(n), gxRepBase(n), links(n.links), id_(n.id_) { ++alive; }
  ~Node() override { --alive; }

  long id() const { return id_; }
  void id(long v)
  {
    mutating();
    id_ = v;
  }

  std::vector<gxPtrHandle<Node>> links;
  std::function<void(gxArchive &)> meanwhile;  // runs between the fields

  static inline int alive = 0;
  static inline int reInits = 0;
  static inline bool setsWhileLoading = false;

 protected:
  void reInit() override { ++reInits; }

 private:
  long id_;
  GX_PERSISTENT(Node);
};
GX_PERSISTENT_IMPL(Node, "Node", 0)
void Node::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "Node");
  gxPersistent::dispatchSerialize(archive);
  archive || id_;
  if (meanwhile)
    meanwhile(archive);
  gf_passElements(archive, links, 1);
  if (setsWhileLoading)
    id(id_);
}

// A diamond of virtual bases, told apart by fields that count how often they pass.
struct Top : virtual gxPersistent {
  int top = 0;
  static inline int passed = 0;
  GX_PERSISTENT_ABSTRACT(Top);
};
GX_PERSISTENT_ABSTRACT_IMPL(Top, 3)
void Top::serialize_(gxArchive &archive, unsigned char version)
{
  EXPECT_EQ(version, 3);
  ++passed;
  archive || top;
}
struct Left : virtual Top {
  int left = 0;
  GX_PERSISTENT_ABSTRACT(Left);
};
GX_PERSISTENT_ABSTRACT_IMPL(Left, 1)
void Left::serialize_(gxArchive &archive, unsigned char)
{
  Top::dispatchSerialize(archive);
  archive || left;
}
struct Right : virtual Top {  // without fields, at the address of others
  GX_PERSISTENT_ABSTRACT(Right);
};
GX_PERSISTENT_ABSTRACT_IMPL(Right, 2)
void Right::serialize_(gxArchive &archive, unsigned char)
{
  Top::dispatchSerialize(archive);
}
struct Bottom : Left, Right, virtual gxRepBase {
  GX_PERSISTENT(Bottom);
};
GX_PERSISTENT_IMPL(Bottom, "Bottom", 4)
void Bottom::serialize_(gxArchive &archive, unsigned char)
{
  Right::dispatchSerialize(archive);
  Left::dispatchSerialize(archive);
  Top::dispatchSerialize(archive);
}

// No gxRepBase: belongs to whoever receives it.
struct Loner : virtual gxPersistent {
  Loner() { ++alive; }
  Loner(Loner const &) = delete;
  ~Loner() override { --alive; }
  int value = 0;
  static inline int alive = 0;
  GX_PERSISTENT(Loner);
};
GX_PERSISTENT_IMPL(Loner, "Loner", 0)
void Loner::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "Loner");
  archive || value;
}

struct Unregistered : Node {
};

struct Twin : virtual gxPersistent, virtual gxRepBase {
  GX_PERSISTENT(Twin);
};
GX_PERSISTENT_IMPL(Twin, "Twin", 0)
void Twin::serialize_(gxArchive &, unsigned char) {}
gxPersistent *makeNode()
{
  return new Node;
}

// A composite, which must be a tree or share its parts, but never contain itself.
struct Box : virtual gxPersistent, virtual gxRepBase {
  gxPtrHandle<Box> first, second;
  GX_PERSISTENT(Box);
};
GX_PERSISTENT_IMPL(Box, "Box", 0)
void Box::serialize_(gxArchive &archive, unsigned char version)
{
  gf_refuseVersion(version, "Box");
  gf_passWithoutRing(archive, first);
  gf_passWithoutRing(archive, second);
}

using Nodes = gxPtrHandle<Node>;

Nodes node(long id, std::vector<Nodes> links = {})
{
  Nodes n(new Node(id));
  n->links = std::move(links);
  return n;
}

std::string messageOf(std::function<void()> const &act)
{
  try {
    act();
  } catch (gxArchive::Errors const &e) {
    return e.message();
  }
  return "no error";
}

class Archive : public testing::Test
{
 protected:
  void SetUp() override { Node::alive = 0; }
  void TearDown() override
  {
    EXPECT_EQ(Node::alive, 0);
    EXPECT_EQ(Loner::alive, 0);
  }

  std::stringstream stream;
};

std::string hex(std::string const &bytes)
{
  std::string text;
  for (unsigned char const c : bytes) {
    text += "0123456789abcdef"[c >> 4];
    text += "0123456789abcdef"[c & 15];
  }
  return text;
}
