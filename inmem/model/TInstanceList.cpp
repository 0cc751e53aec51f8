#include "inmem/model/TInstanceList.h"

#include <iterator>
#include <utility>

#include <boost/make_shared.hpp>

namespace NORVHAV20 {

void TInstanceList::Append(TItem item) {
  if (m_chunks.empty() || m_chunks.back()->size() == kChunkSize) {
    auto chunk = boost::make_shared<TChunk>();
    chunk->push_back(std::move(item));
    m_chunks.push_back(std::move(chunk));
  } else {
    Writable(m_chunks.size() - 1).push_back(std::move(item));
  }
  ++m_size;
}

TInstanceList::TChunk& TInstanceList::Writable(std::size_t chunk) {
  auto& shared = m_chunks[chunk];
  if (shared.use_count() > 1) shared = boost::make_shared<TChunk>(*shared);
  return *shared;
}

void TInstanceList::InsertAt(TPlace place, TItem item) {
  TChunk& chunk = Writable(place.chunk);
  if (chunk.size() < kChunkSize) {
    chunk.insert(chunk.begin() + static_cast<std::ptrdiff_t>(place.item), std::move(item));
    ++m_size;
    return;
  }
  const auto middle = chunk.begin() + kChunkSize / 2;
  const auto next = static_cast<std::ptrdiff_t>(place.chunk) + 1;
  m_chunks.insert(m_chunks.begin() + next, boost::make_shared<TChunk>(middle, chunk.end()));
  chunk.erase(middle, chunk.end());
  if (place.item > kChunkSize / 2) place = {place.chunk + 1, place.item - kChunkSize / 2};
  InsertAt(place, std::move(item));
}

void TInstanceList::RemoveAt(TPlace place) {
  TChunk& chunk = Writable(place.chunk);
  chunk.erase(chunk.begin() + static_cast<std::ptrdiff_t>(place.item));
  if (chunk.empty()) m_chunks.erase(m_chunks.begin() + static_cast<std::ptrdiff_t>(place.chunk));
  --m_size;
}

}  // namespace NORVHAV20
