// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <vector>

namespace tallyscope {

// The links of a node of a CDLBTree. The tree owns the nodes; a node with neither child is a leaf.
template <class Node>
class CDLBTree_Base {
 public:
  Node* parent = nullptr;
  Node* left = nullptr;
  Node* right = nullptr;

  bool IsLeaf() const { return left == nullptr && right == nullptr; }
};

// A binary tree linked both ways. Nodes stand by value in blocks, siblings side by side as a rule, and keep their
// address until they are deleted. A copy has nodes of its own.
template <class Node>
class CDLBTree {
 public:
  CDLBTree() = default;
  CDLBTree(const CDLBTree& other) { CopyNode(other.root_, nullptr, root_); }
  CDLBTree& operator=(const CDLBTree&) = delete;
  virtual ~CDLBTree() = default;

  virtual bool HasRoot() { return root_ != nullptr; }
  virtual Node* GetRoot() { return root_; }
  const Node* GetRootNode() const { return root_; }
  virtual Node* GetOrCreateRoot() { return root_ != nullptr ? root_ : AddLeft(nullptr); }

  // Hang a new node on a free place of `parent`; with a null parent it becomes the root. Null if the place is taken.
  virtual Node* AddLeft(Node* parent) { return Hang(parent, parent != nullptr ? &parent->left : &root_); }
  virtual Node* AddRight(Node* parent) { return Hang(parent, parent != nullptr ? &parent->right : &root_); }

  // Destroys the node with its subtrees and unlinks it from its parent. A null node is ignored.
  virtual void Delete(Node* node) {
    if (node == nullptr) return;
    Delete(node->left);
    Delete(node->right);
    if (node->parent != nullptr) {
      (node->parent->left == node ? node->parent->left : node->parent->right) = nullptr;
    }
    if (node == root_) root_ = nullptr;
    *node = Node();
    free_.push_back(node);
  }
  virtual void Clear() {
    root_ = nullptr;
    free_.clear();
    nodes_.clear();
  }

 private:
  Node* Hang(Node* parent, Node** place) {
    if (*place != nullptr) return nullptr;
    *place = Make();
    (*place)->parent = parent;
    return *place;
  }
  void CopyNode(const Node* from, Node* parent, Node*& place) {
    if (from == nullptr) return;
    place = &nodes_.emplace_back(*from);
    place->parent = parent;
    place->left = place->right = nullptr;
    CopyNode(from->left, place, place->left);
    CopyNode(from->right, place, place->right);
  }
  Node* Make() {
    if (free_.empty()) return &nodes_.emplace_back();
    Node* node = free_.back();
    free_.pop_back();
    return node;
  }

  Node* root_ = nullptr;
  std::deque<Node> nodes_;
  std::vector<Node*> free_;  // deleted nodes, for reuse
};

}  // namespace tallyscope
