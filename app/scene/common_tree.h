#pragma once

#include <boost/intrusive_ptr.hpp>
#include <vector>

#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"

namespace corvanta::app {

/// Makes a tree "scene" that shows each of `trees` by a reference item of that tree's name.
boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode> CreateCommonTree(
    data::document::NDocument& document,
    std::vector<boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode>> const&
        trees);

}  // namespace corvanta::app
