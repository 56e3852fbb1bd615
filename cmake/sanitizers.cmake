# With CORVANTA_SANITIZE every target is built with the address and undefined-behaviour sanitizers, and a finding ends the program.
if(CORVANTA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
