#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/movie/NMovieNode.h"

namespace corvanta::data::domain::movie {

/// The domain of type "movie".
class CORVANTA_API NMovieDomain : public NDomain<NMovieNode, core::name::NStrictNamespace> {
 public:
  NMovieDomain(core::domain::NDomainManager const* manager,
               events::attribute_change::NMultiplexer const* multiplexer);
  ~NMovieDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
};

}  // namespace corvanta::data::domain::movie
