// ConfigManager::Node: one named node of the configuration, a name plus a field list.
#pragma once

#include <map>
#include <string>

#include "qr_config/config/model/config_manager_types.h"
#include "qr_config/config/model/field.h"
#include "qr_config/config/model/field_list.h"
#include "qr_config/platform/sfile.h"

class ConfigManager;
class ConfigManagerImpl;

// A node: a name (any bytes, compared exactly) and an ordered list of fields, inherited from
// tnode<Field> with all its operations. Field names need not be unique; every lookup by name
// takes the first field of that name in list order, by a linear scan.
//
// Moving a node copies its fields (the source keeps them) and moves its name (the source's
// name becomes empty). Not synchronised.
class QR_API ConfigManagerTypes::Node : public tnode<ConfigManagerTypes::Field> {
 public:
  // A node named `name` without fields.
  explicit Node(const std::string& name);
  // A node named `name` with one field per parameter, visited in map order: kind 1 gives a
  // String field, kind 2 a Long field, kind 3 a Bool field, named by the parameter's own name
  // (not its map key) and added by the push_back rule (an equal field is not added twice).
  // Throws QRError 261 without argument for a parameter of any other kind; errors of
  // SFile::Parameter::Value pass unchanged. Nothing is made on failure.
  Node(const std::string& name, const std::map<std::string, SFile::Parameter>& parameters);
  Node(const Node& other);
  Node(Node&& other);
  // Self-assignment changes nothing. On failure (memory) the node is unchanged.
  Node& operator=(const Node& other);
  Node& operator=(Node&& other);
  ~Node() override;

  const std::string& Name() const noexcept { return m_Name; }

  // The first field named `name`; the reference stays valid until that field is removed or
  // the node destroyed. Throws QRError 261 with `name` as argument when there is none; a
  // missing field is never created.
  Field& Find(const std::string& name);
  const Field& Find(const std::string& name) const;
  Field& operator[](const std::string& name) { return Find(name); }
  const Field& operator[](const std::string& name) const { return Find(name); }
  // Whether a field named `name` exists. Never throws.
  bool Exists(const std::string& name) const noexcept;

  // Merges the fields of `other`, in its order, into this node; the name is not touched.
  // For each field f of `other`:
  //  - if this node has a field named like f, the first such field t takes f's value when t
  //    is Bool, Long or String (QRError 1 when f's tag differs); t is left alone and f
  //    skipped when t is None or UTF8String;
  //  - otherwise a Bool, Long or String f is appended (push_back rule); a None or UTF8String
  //    f throws QRError 261 without argument.
  // An error ends the merge at that field; the fields merged before it stay merged.
  void Update(const Node& other);

 protected:
  // A node with an empty name and no fields, for the library's own use (the manager and
  // subclasses); callers name every node they make.
  Node();

 private:
  friend class ::ConfigManager;
  friend class ::ConfigManagerImpl;

  const Field* FindFirst(const std::string& name) const noexcept;

  std::string m_Name;
};
