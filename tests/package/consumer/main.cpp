#include <corvanta/corvanta.h>

#include <iostream>

// What a newcomer's first program does: nodes, an event and a picture that was installed.
namespace {

class Listener : public corvanta::data::events::attribute_change::NListener {
 public:
  int count = 0;

 private:
  void OnAttributeChangeImpl(corvanta::core::attribute::NAttributeHost&,
                             corvanta::core::attribute::NAttribute const&) override {
    ++count;
  }
};

}  // namespace

int main() {
  using namespace corvanta;
  core::domain::NDomainManager manager;
  boost::intrusive_ptr<data::events::NEventMultiplexer> const events(
      new data::events::NEventMultiplexer);
  boost::intrusive_ptr<data::domain::light::NLightDomain> const lights(
      new data::domain::light::NLightDomain(&manager,
                                            &events->GetAttributeChangeEventMultiplexer()));
  boost::intrusive_ptr<data::domain::image::NImageDomain> const images(
      new data::domain::image::NImageDomain(&manager,
                                            &events->GetAttributeChangeEventMultiplexer()));
  auto const light = lights->CreateNode(core::node::NNodeID());
  boost::intrusive_ptr<Listener> const listener(new Listener);
  events->GetAttributeChangeEventMultiplexer().AddObserver(*listener);
  light->SetColorR(0.5);
  auto const image = images->CreateNode(core::node::NNodeID());
  image->SetImageLocator(data::internal::GetDefaultEnvironmentMapImage());
  unsigned int const bytes = image->GetImage()->GetDataByteLength();
  std::cout << "events " << listener->count << ", bytes of the cube map " << bytes << '\n';
  return listener->count == 2 && bytes == 98432 ? 0 : 1;
}
