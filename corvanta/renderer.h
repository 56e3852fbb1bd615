#pragma once

// Every public header of corvanta::renderer, which draws the views of a document.

#include "corvanta/data/domain/texture/NTextureUse.h"
#include "corvanta/renderer/NBillboard.h"
#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NDrawItem.h"
#include "corvanta/renderer/NPixels.h"
#include "corvanta/renderer/NPreview.h"
#include "corvanta/renderer/NRenderError.h"
#include "corvanta/renderer/NRenderer.h"
#include "corvanta/renderer/NTarget.h"
#include "corvanta/renderer/NViewpoint.h"
#include "corvanta/renderer/drawn_attributes.h"
