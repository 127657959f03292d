// tinygltf 2.7.0 as this library uses it: the JSON structure and buffers only. Its image
// decoding (stb) is compiled out, and external images are never read: the model keeps their
// URIs, which is all the system needs of them.
#pragma once

#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#define TINYGLTF_NO_EXTERNAL_IMAGE
#include <tiny_gltf.h>
